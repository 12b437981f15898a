#include "spectra/inverterreader.h"

#include "llama/qyaml.h"
#include "util/regularfile.h"
#include "util/textescape.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace SpectMath {

namespace {

using Llama::ListNode;
using Llama::MapNode;
using Llama::Node;
using Llama::NodeError;

InverterFileError badStructure(const QString &path)
{
    return InverterFileError(fillMarkers(QStringLiteral("File '%1' has bad structure"), {path}));
}

/// The marker %1 stands twice: both take the path, the expected count lands on %2 and the found one nowhere. Known by
/// these words, so they stay.
NodeError sizeError(const char *pattern, const QString &path, int expected)
{
    return NodeError(fillMarkers(QString::fromUtf8(pattern), {path, QString::number(expected)}));
}

RealMatrix readMatrix(const MapNode &setting, const QString &filePath)
{
    const int rows = setting.at("rows").toInt();
    const int cols = setting.at("cols").toInt();
    const ListNode data = setting.at("data").toList();
    const double divisor = setting.value("mult", 1.0);
    if (rows < 1 || cols < 1 || rows > largestMatrixSide || cols > largestMatrixSide)
        throw badStructure(filePath);
    if (data.size() != rows)
        throw sizeError("Setting '%1' must contain %1 rows, but contains %2", data.path(), rows);

    RealMatrix matrix{std::size_t(rows), std::size_t(cols)};
    for (int i = 0; i < rows; ++i) {
        const ListNode row = data.at(i).toList();
        if (row.size() != cols)
            throw sizeError("Setting '%1' must contain %1 elements, but contains %2", row.path(), cols);
        const std::vector<double> elements = row.toDoubleVector();
        for (int j = 0; j < cols; ++j)
            matrix(std::size_t(i), std::size_t(j)) = elements[std::size_t(j)] / divisor;
    }
    return matrix;
}

RealVector toRealVector(const std::vector<double> &values)
{
    RealVector result(values.size());
    std::copy(values.begin(), values.end(), result.begin());
    return result;
}

/// The settings that stand between the matrices and the grid, in the order in which a file's faults are told.
void readSettings(const MapNode &root, int format, const UnitTable &unitTable, InverterSettings &settings,
                  SpectrumInfo &info)
{
    root.read("smoothing", &settings.smoothing);
    info.name = root.at("name").toString();
    root.read("inverter_name", &info.inverterName);
    root.read("comment", &info.comment);
    root.read("opmode", &info.opmode);
    root.read("electrometer_group", &info.electrometerGroup);
    info.concentrationUnit = parseUnit(root.at("yunit").toString(), unitTable);
    root.read("initial_regul_coef", &settings.initialRegulCoef);
    root.read("next_regul_coef", &settings.nextRegulCoef);
    int iterations = settings.negRemoveIterations;
    root.read("neg_remove_iterations", &iterations);
    settings.negRemoveIterations = iterations;
    root.read("neg_remove_coef", &settings.negRemoveCoef);
    root.read("regul_smoothing_coef", &settings.regulSmoothingCoef);
    settings.regulOffDiagCorrection = root.value("regul_off_diag_correction", settings.regulOffDiagCorrection);
    // The first format knew no choice here: negative signals always widened their variance.
    settings.negSignalBias = format > 0 ? root.value("neg_signal_bias", false) : true;
    settings.hasRegulLimit = root.read("regul_limit", &settings.regulLimit);
}

void readGrid(const MapNode &grid, const UnitTable &unitTable, SpectrumInfo &info)
{
    const RealVector points = toRealVector(grid.at("points").toList().toDoubleVector());
    const Node type = grid.at("type");
    const QString typeText = type.toString();
    const QString unitText = grid.at("unit").toString();
    if (typeText == QLatin1String("radius")) {
        info.scale = DistributionScale::radius;
        info.sizeUnit = parseUnit(unitText, unitTable);
        info.radii = points;
    } else if (typeText == QLatin1String("mobility")) {
        info.scale = DistributionScale::mobility;
        info.mobilityUnit = parseUnit(unitText, unitTable);
        info.mobilities = points;
    } else {
        throw NodeError(fillMarkers(QStringLiteral("Setting '%1' must be 'radius' or 'mobility'"), {type.path()}));
    }
}

/// Weights over the whole axis: their dot product with a spectrum is its total number concentration.
RealVector wholeAxisWeights(const SpectrumInfo &info)
{
    const double infinity = std::numeric_limits<double>::infinity();
    return info.fractionWeights(MobilitySize::fromDiameter(info.model, 0.0, info.sizeUnit),
                                MobilitySize::fromDiameter(info.model, infinity, info.sizeUnit),
                                ConcentrationType::number);
}

InverterPointer makeInverter(const MapNode &root, const QByteArray &bytes, const QString &path,
                             const UnitTable &unitTable)
{
    auto info = std::make_shared<SpectrumInfo>();
    InverterSettings settings;
    info->hash = QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex());

    int format = 0;
    root.read("format", &format);
    if (format > 1)
        throw NodeError(QStringLiteral("Inverter requires a newer Morvantide/Quilvane."));
    const Node postTransform = root.at("posttransform");
    if (postTransform.value.isValid())
        settings.postTransform = readMatrix(postTransform.toMap(), path);
    settings.instrumentMatrix = readMatrix(root.at(format == 0 ? "instrument" : "instrument_matrix").toMap(), path);
    readSettings(root, format, unitTable, settings, *info);
    readGrid(root.at("xpoints").toMap(), unitTable, *info);

    info->finish();
    settings.totalWeights = wholeAxisWeights(*info);
    if (info->inverterName.isEmpty())
        info->inverterName = QFileInfo(path).fileName();
    info->inverterData = bytes;
    return std::make_shared<const Inverter>(std::move(settings), std::move(info));
}

/// Two matrices of the largest size have fewer, with their rows, the grid and all other settings.
constexpr qint64 mostInverterNodes = 2'100'000;
/// A key and a path for each inverter.
constexpr qint64 mostMapNodes = 100'000;

/// The one document of a text, which must be a map. Throws InverterFileError.
MapNode soleMap(const QByteArray &bytes, const QString &path, qint64 mostNodes)
{
    const QVariantList documents = Llama::yamlLoad(bytes, path, mostNodes);
    if (documents.size() != 1 || documents.first().type() != QVariant::Map)
        throw badStructure(path);
    return Node(documents.first(), path).toMap();
}

} // namespace

InverterPointer readInverterText(const QByteArray &bytes, const QString &path, const UnitTable &unitTable)
{
    if (bytes.size() > largestInverterText)
        throw badStructure(path);
    try {
        return makeInverter(soleMap(bytes, path, mostInverterNodes), bytes, path, unitTable);
    } catch (const Llama::Exception &error) {
        throw InverterFileError(error.message());
    }
}

QStringList readInverterMap(const QString &path)
{
    QFile file(path);
    if (!openRegularFile(file))
        throw InverterFileError(fillMarkers(QStringLiteral("Unable to open '%1'"), {path}));
    const QByteArray bytes = readUpTo(file, largestInverterText + 1);
    if (bytes.size() > largestInverterText)
        throw badStructure(path);

    QStringList paths;
    try {
        const MapNode root = soleMap(bytes, path, mostMapNodes);
        for (auto it = root.entries.cbegin(); it != root.entries.cend(); ++it) {
            const Node value = root.at(it);
            if (it.value().type() == QVariant::Map) {
                const MapNode group = value.toMap();
                for (auto entry = group.entries.cbegin(); entry != group.entries.cend(); ++entry)
                    paths << group.at(entry).requireString();
            } else if (it.value().canConvert<QString>()) {
                paths << value.toString();
            } else {
                throw InverterFileError(
                    fillMarkers(QStringLiteral("Setting '%1' must be a string or map"), {value.path()}));
            }
        }
    } catch (const Llama::Exception &error) {
        throw InverterFileError(error.message());
    }
    const QDir folder = QFileInfo(path).absoluteDir();
    for (QString &named : paths)
        named = folder.absoluteFilePath(named);
    return paths;
}

} // namespace SpectMath
