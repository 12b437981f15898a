#include "demo/inverterfile.h"

#include "demo/zipwriter.h"
#include "log/logger.h"
#include "spectra/inverterfiles.h"
#include "spectra/smoothing.h"
#include "util/filereplacement.h"

#include <QDir>

#include <algorithm>
#include <cmath>

namespace Demo {

namespace {

constexpr int publishedCount = 40;
constexpr int classCount = 40;
constexpr double matrixMult = 1e6; // so that fixed point with six digits loses nothing that matters

QByteArray number(double value, char format = 'g', int digits = 12)
{
    return QByteArray::number(value, format, digits);
}

QByteArray listText(const RealVector &values)
{
    QByteArray text;
    for (double value : values)
        text += (text.isEmpty() ? "[" : ", ") + number(value);
    return text + "]";
}

QByteArray matrixText(const char *key, const RealMatrix &matrix, double mult)
{
    QByteArray text = QByteArray(key) + ":\n";
    text += "  rows: " + QByteArray::number(int(matrix.size1())) + "\n";
    text += "  cols: " + QByteArray::number(int(matrix.size2())) + "\n";
    text += "  mult: " + number(mult) + "\n  data:\n";
    for (std::size_t i = 0; i < matrix.size1(); ++i) {
        text += "  - [";
        for (std::size_t j = 0; j < matrix.size2(); ++j)
            text += (j > 0 ? ", " : "") + number(matrix(i, j) * mult, 'f', 6);
        text += "]\n";
    }
    return text;
}

/// Takes the density on the classes to the published points, as linear over the logarithm of the axis.
RealMatrix interpolation(const RealVector &classes, const RealVector &points)
{
    RealMatrix matrix(classes.size(), points.size(), 0.0);
    const double step = std::log(classes[1] / classes[0]);
    for (std::size_t k = 0; k < points.size(); ++k) {
        const double position = std::log(points[k] / classes[0]) / step;
        const auto below = std::size_t(std::clamp(position, 0.0, double(classes.size() - 2)));
        matrix(below, k) = 1 - (position - double(below));
        matrix(below + 1, k) = position - double(below);
    }
    return matrix;
}

/// What tells two sets of inverters of the instrument apart.
struct Variety {
    QByteArray name, comment;
    double smoothing; ///< the width, in published points, of the window that goes over the densities
};

QByteArray inverterText(const Instrument &instrument, const Variety &variety, Mode mode, Polarity polarity)
{
    const RealVector classes = classPoints(mode);
    const RealVector points = publishedPoints(mode);
    const QByteArray modeText = modeName(mode).toUtf8();
    const QByteArray polarityText = polarityName(polarity).toUtf8();
    const bool ions = mode == Mode::Ions;

    QByteArray text = "# Inverter of the demonstration mobility spectrometer\n";
    text += "format: 1\n";
    text += "name: " + modeText + " " + polarityText + "\n";
    text += "inverter_name: " + variety.name + "\n";
    text += "comment: " + variety.comment + "\n";
    text += "opmode: " + modeText + "\n";
    text += "electrometer_group: " + polarityText + "\n";
    text += "yunit: 1/cm^3\n";
    // As little as keeps neighbouring classes from taking turns: more of it takes from the totals.
    text += "initial_regul_coef: 0.05\n";
    text += "next_regul_coef: 0.1\n";
    text += "regul_limit: 1\n";
    text += "regul_smoothing_coef: 1\n";
    text += "regul_off_diag_correction: false\n";
    text += "neg_remove_iterations: " + QByteArray::number(classCount / 2) + "\n";
    text += "neg_signal_bias: true\n";
    text += "xpoints:\n";
    text += QByteArray("  type: ") + (ions ? "mobility" : "radius") + "\n";
    text += QByteArray("  unit: ") + (ions ? "cm^2/s/V" : "nm") + "\n";
    text += "  points: " + listText(points) + "\n";
    text += matrixText("instrument_matrix", instrument.matrix(mode, polarity, classes), matrixMult);
    const RealMatrix smoothing = SpectMath::smoothingWindowMatrix(publishedCount, variety.smoothing);
    const RealMatrix published = boost::numeric::ublas::prod(interpolation(classes, points), smoothing);
    text += matrixText("posttransform", published, 1);
    return text;
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    const QString reason = replaceFile(path, bytes);
    if (reason.isNull())
        return true;
    Log::Logger(QStringLiteral("demo")).log(Log::Error, QStringLiteral("Could not write '%1': %2").arg(path, reason));
    return false;
}

} // namespace

RealVector publishedPoints(Mode mode)
{
    return mode == Mode::Ions ? logarithmicGrid(3.0, 0.0014, publishedCount) : logarithmicGrid(0.8, 21, publishedCount);
}

RealVector classPoints(Mode mode)
{
    return mode == Mode::Ions ? logarithmicGrid(4.5, 0.0009, classCount) : logarithmicGrid(0.6, 60, classCount);
}

std::vector<InverterFile> makeInverterFiles(const Instrument &instrument)
{
    const Variety plain{"demo", "Inverts the made-up instrument", 0};
    std::vector<InverterFile> files;
    for (Mode mode : {Mode::Ions, Mode::Particles})
        for (Polarity polarity : {Polarity::Negative, Polarity::Positive}) {
            InverterFile file;
            file.mode = mode;
            file.polarity = polarity;
            file.name = QStringLiteral("%1-%2.inverter").arg(modeName(mode), polarityName(polarity));
            file.text = inverterText(instrument, plain, mode, polarity);
            file.inverter = SpectMath::readInverterText(file.text, file.name, unitTable());
            files.push_back(std::move(file));
        }
    return files;
}

bool writeInverterFiles(const std::vector<InverterFile> &files, const QString &folder)
{
    QDir().mkpath(folder); // a failure shows in the first file
    const QDir target(folder);
    bool written = true;
    QByteArray map;
    ZipWriter pack;
    Mode mode = Mode::Offset;
    for (const InverterFile &file : files) {
        written = writeFile(target.filePath(file.name), file.text) && written;
        pack.add(file.name.toUtf8(), file.text);
        if (file.mode != mode)
            map += modeName(file.mode).toUtf8() + ":\n";
        mode = file.mode;
        map += "  " + polarityName(file.polarity).toUtf8() + ": " + file.name.toUtf8() + "\n";
    }
    written = writeFile(target.filePath(QStringLiteral("demo.invmap")), map) && written;
    return writeFile(target.filePath(QStringLiteral("demo.sinp")), pack.finish()) && written;
}

bool writeSmoothPack(const Instrument &instrument, const QString &path)
{
    const Variety smooth{"smooth", "Smooths over neighbouring sizes", 4};
    ZipWriter pack;
    for (const InverterFile &file : makeInverterFiles(instrument))
        pack.add(file.name.toUtf8(), inverterText(instrument, smooth, file.mode, file.polarity));
    return writeFile(path, pack.finish());
}

} // namespace Demo
