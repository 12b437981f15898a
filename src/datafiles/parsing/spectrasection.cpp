#include "datafiles/parsing/spectrasection.h"

#include "datafiles/parsing/filereadererror.h"
#include "datafiles/parsing/headerlimits.h"
#include "datafiles/parsing/unittext.h"
#include "spectra/unitparser.h"

namespace HeaderSections {

namespace {

using SpectMath::SpectrumInfo;

RealVector readPoints(const Llama::Node &node, qint64 *total)
{
    const Llama::ListNode list = node.toList();
    checkHeaderCount(*total += list.size());
    const std::vector<double> points = list.toDoubleVector();
    RealVector vector(points.size());
    std::copy(points.begin(), points.end(), vector.begin());
    return vector;
}

/// Takes the points into the description.
void setAxis(SpectrumInfo &info, const QString &scale, const Unit &unit, RealVector &points)
{
    if (scale == QLatin1String("mobility")) {
        info.scale = SpectMath::DistributionScale::mobility;
        info.mobilityUnit = unit;
        info.mobilities.swap(points);
    } else if (scale == QLatin1String("radius")) {
        info.scale = SpectMath::DistributionScale::radius;
        info.sizeUnit = unit;
        info.radii.swap(points);
    } else {
        throw FileReaderError(QStringLiteral("Unknown scale \"%1\"").arg(scale));
    }
}

std::shared_ptr<SpectrumInfo> readInfo(const Llama::MapNode &map, qint64 *points)
{
    auto info = std::make_shared<SpectrumInfo>();
    info->name = map.at(QStringLiteral("name")).requireString();
    info->inverterName = map.value(QStringLiteral("inverter_name"), QString());
    info->comment = map.value(QStringLiteral("comment"), QString());
    RealVector axis = readPoints(map.at(QStringLiteral("xpoints")), points);
    const QString xunit = map.at(QStringLiteral("xunit")).requireString();
    const QString yunit = map.at(QStringLiteral("yunit")).requireString();
    const QString scale = map.at(QStringLiteral("scale")).requireString();
    const Llama::Node hash = map.get(QStringLiteral("hash"));
    if (hash.exists && hash.value.isValid())
        info->hash = QString::fromUtf8(hash.toByteArray());
    try {
        const Unit axisUnit = parseHeaderUnit(xunit);
        info->concentrationUnit = parseHeaderUnit(yunit);
        setAxis(*info, scale, axisUnit, axis);
    } catch (const SpectMath::UnitParsingError &error) {
        throw FileReaderError(QStringLiteral("Invalid unit: %1").arg(error.message()));
    }
    info->finish();
    return info;
}

InversionVariable inversionVariable(const QString &word)
{
    if (word == QLatin1String("current_rms_error"))
        return InversionVariable::rmsError;
    if (word == QLatin1String("current_mean_abs_error"))
        return InversionVariable::meanAbsError;
    if (word == QLatin1String("current_total_error"))
        return InversionVariable::totalError;
    return InversionVariable::unknown;
}

} // namespace

std::optional<Spectra> readSpectra(const Llama::MapNode &header, FileReaderState &state, const Log::Logger &logger)
{
    const Llama::Node node = header.get(QStringLiteral("spectra"));
    if (!node.exists)
        return std::nullopt;
    const Llama::ListNode list = node.toList();
    checkHeaderCount(list.size());
    Spectra spectra;
    qint64 points = 0;
    for (int i = 0; i < list.size(); ++i) {
        checkHeaderCount(state.spectrumInfos.size());
        spectra.infos.append(state.shareSpectrum(readInfo(list.at(i).toMap(), &points), true, logger));
    }
    const Llama::ListNode words = header.get(QStringLiteral("inversion_vars")).toList();
    checkHeaderCount(words.size());
    for (int i = 0; i < words.size(); ++i)
        spectra.inversionVariables.append(inversionVariable(words.at(i).toString()));
    return spectra;
}

} // namespace HeaderSections
