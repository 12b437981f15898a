#include "dataexport/exportsetup.h"

#include "dataexport/setupreader.h"
#include "llama/qyaml.h"
#include "util/regularfile.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace DataExport {

namespace {

constexpr int latestVersion = 1;
constexpr int longestSeparator = 100;
constexpr int longestTimeFormat = 1000;

/// "diameter" and "mobility"; a radius is no axis of tables.
bool readScale(const SetupReader &map, const char *key, DistributionScale *scale, const char *fault)
{
    QString word = SpectMath::toText(*scale);
    if (!map.read(key, &word))
        return false;
    bool isKnown = false;
    const auto known = SpectMath::distributionScaleFromText(word, *scale, &isKnown);
    if (!isKnown || known == DistributionScale::radius)
        return map.complain(QString::fromLatin1(fault).arg(word));
    *scale = known;
    return true;
}

bool readMass(const SetupReader &map, Quantity *quantity)
{
    QString unit = QStringLiteral("mg/cm^3");
    if (!map.read("material_density", &quantity->density) || !map.read("mass_unit", &unit))
        return false;
    quantity->inMicrograms = unit == QStringLiteral(u"\u00b5g/m^3");
    if (!quantity->inMicrograms && unit != QLatin1String("mg/cm^3"))
        return map.complain(QStringLiteral("Invalid mass unit '%1'.").arg(unit));
    if (quantity->isMass && !isFractionLimit(quantity->density))
        return map.complain(QStringLiteral("Invalid material density %1.").arg(quantity->density));
    return true;
}

bool readQuantity(const SetupReader &map, Quantity *quantity)
{
    QString word = SpectMath::toText(quantity->type);
    if (!map.read("concentration_type", &word))
        return false;
    bool isKnown = true;
    quantity->isMass = word == QLatin1String("mass");
    quantity->type = quantity->isMass ? SpectMath::ConcentrationType::volume
                                      : SpectMath::concentrationTypeFromText(word, quantity->type, &isKnown);
    if (!isKnown)
        return map.complain(QStringLiteral("Invalid concentration type '%1'.").arg(word));
    return readMass(map, quantity);
}

bool readDecades(const SetupReader &map, DecadeFractions *decades)
{
    QString scale = QStringLiteral("diameter");
    if (!map.read("decade_fractions_enabled", &decades->isEnabled) || !map.read("decade_fractions_scale", &scale) ||
        !map.read("decade_fractions_from", &decades->from) || !map.read("decade_fractions_to", &decades->to) ||
        !map.read("decade_fractions_number", &decades->perDecade))
        return false;
    QString axis = scale;
    decades->hasRange = scale.endsWith(QLatin1String("_custom"));
    if (decades->hasRange)
        axis.chop(int(qstrlen("_custom")));
    QString fault = decades->fault();
    if (axis == QLatin1String("mobility"))
        decades->scale = DistributionScale::mobility;
    else if (axis != QLatin1String("diameter"))
        fault = QStringLiteral("Invalid decade fraction scale '%1'.").arg(scale);
    if (decades->isEnabled && !fault.isNull()) {
        map.complain(fault);
        decades->isEnabled = false;
    }
    return true;
}

bool readField(const SetupReader &map, ConcentrationField *field)
{
    bool isCustom = false;
    QString limits;
    if (!map.read("spectra", &field->spectra) || !map.read("total_concentration_enabled", &field->total) ||
        !map.read("custom_fractions_enabled", &isCustom) || !map.read("custom_fractions_data", &limits) ||
        !readScale(map, "custom_fractions_scale", &field->customScale, "Invalid custom fraction scale '%1'.") ||
        !readQuantity(map, &field->quantity) || !readDecades(map, &field->decades))
        return false;
    if (isCustom)
        field->customFractions = customFractions(limits, map.errors());
    return true;
}

bool readField(const SetupReader &map, SpectrumField *field)
{
    QString distribution = SpectMath::toText(field->distribution);
    if (!map.read("spectra", &field->spectra) || !map.read("distribution", &distribution) ||
        !map.read("uncertainties", &field->uncertainties) ||
        !readScale(map, "scale", &field->scale, "Invalid scale '%1'.") || !readQuantity(map, &field->quantity))
        return false;
    bool isKnown = false;
    field->distribution = SpectMath::distributionTypeFromText(distribution, field->distribution, &isKnown);
    return isKnown || map.complain(QStringLiteral("Invalid distribution '%1'.").arg(distribution));
}

bool readField(const SetupReader &map, VariableField *field)
{
    return map.read("variables", &field->variables);
}

bool readField(const SetupReader &map, ElectrometerField *field)
{
    return map.read("electrometers", &field->electrometers) && map.read("currents", &field->currents) &&
           map.read("deviations", &field->deviations) && map.read("raw_currents", &field->rawCurrents) &&
           map.read("voltages", &field->voltages);
}

template<typename AnyField>
void addField(const SetupReader &map, ExportSetup *setup)
{
    AnyField field;
    if (readField(map, &field))
        setup->fields.emplace_back(std::move(field));
}

void addField(const Llama::Node &node, ExportSetup *setup)
{
    if (node.value.userType() != QMetaType::QVariantMap) {
        setup->errors << Llama::typeErrorText(node.path(), QStringLiteral("QVariantMap"), node.value);
        return;
    }
    const SetupReader map(node.toMap(), &setup->errors);
    QString type;
    if (!map.read("type", &type))
        return;
    if (type == QLatin1String("concentration"))
        addField<ConcentrationField>(map, setup);
    else if (type == QLatin1String("spectrum"))
        addField<SpectrumField>(map, setup);
    else if (type == QLatin1String("variable"))
        addField<VariableField>(map, setup);
    else if (type == QLatin1String("electrometer"))
        addField<ElectrometerField>(map, setup);
    else
        map.complain(QStringLiteral("Unknown field type '%1'.").arg(type));
}

bool isSeparator(const QString &text)
{
    const auto breaksLines = [](QChar c) {
        return c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QLatin1Char('"') || c.isNull();
    };
    return !text.isEmpty() && text.size() <= longestSeparator && std::none_of(text.begin(), text.end(), breaksLines);
}

void readGeneral(const SetupReader &map, GeneralSettings *general)
{
    const GeneralSettings defaults;
    QString zone;
    // A key of a wrong type leaves its default.
    map.read("output_file", &general->outputFile);
    map.read("time_zone", &zone);
    map.read("file_name_add_date", &general->addDate);
    map.read("file_name_add_opmode", &general->addOpmode);
    map.read("field_separator", &general->separator);
    map.read("time_format", &general->timeFormat);
    map.read("comment_lines", &general->commentLines);
    map.read("opmodes", &general->opmodes);
    general->local = zone == QLatin1String("local");
    if (!isSeparator(general->separator)) {
        map.complain(QStringLiteral("Invalid field separator '%1'.").arg(general->separator.left(longestSeparator)));
        general->separator = defaults.separator;
    }
    if (general->timeFormat.size() > longestTimeFormat) {
        map.complain(QStringLiteral("The time format is too long."));
        general->timeFormat = defaults.timeFormat;
    }
}

} // namespace

ExportSetup exportSetupFrom(const QVariant &tree)
{
    if (tree.userType() != QMetaType::QVariantMap)
        throw SetupError(QStringLiteral("It isn't a map"));
    const Llama::MapNode root = Llama::Node(tree).toMap();
    const Llama::Node general = root.get(QStringLiteral("general"));
    const Llama::Node fields = root.get(QStringLiteral("fields"));
    if (general.value.userType() != QMetaType::QVariantMap)
        throw SetupError(QStringLiteral("It has no map \"general\""));
    if (fields.value.userType() != QMetaType::QVariantList)
        throw SetupError(QStringLiteral("It has no list \"fields\""));
    ExportSetup setup;
    int version = latestVersion;
    SetupReader(root, &setup.errors).read("quilvane_data_export_version", &version);
    if (version > latestVersion)
        throw SetupError(QStringLiteral("It is of version %1, which is too new").arg(version));

    readGeneral(SetupReader(general.toMap(), &setup.errors), &setup.general);
    const Llama::ListNode list = fields.toList();
    for (int i = 0; i < list.size(); ++i)
        addField(list.at(i), &setup);
    return setup;
}

QVariant loadSetupTree(const QString &path)
{
    QFile file(path);
    QString reason;
    if (!openRegularFile(file, &reason))
        throw SetupError(reason);
    try {
        const QVariantList documents = Llama::yamlLoad(&file, QFileInfo(path).fileName());
        return documents.size() == 1 ? documents.first() : QVariant();
    } catch (const Llama::Exception &error) {
        throw SetupError(error.message());
    }
}

ExportSetup loadExportSetup(const QString &path)
{
    return exportSetupFrom(loadSetupTree(path));
}

} // namespace DataExport
