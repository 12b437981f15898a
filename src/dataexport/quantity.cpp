#include "dataexport/quantity.h"

namespace DataExport {

namespace {

constexpr double kilogramsPerCubicMetre = 1000.0;    // of one g/cm^3; also one mg/cm^3
constexpr double microgramsPerMilligram = 1e3 * 1e6; // a cubic metre is 1e6 cm^3

} // namespace

QString Quantity::text() const
{
    return isMass ? QStringLiteral("mass") : SpectMath::toText(type);
}

QString Quantity::unitText(const SpectMath::SpectrumInfo &info) const
{
    if (isMass)
        return inMicrograms ? QStringLiteral(u"\u00b5g/m^3") : QStringLiteral("mg/cm^3");
    return info.concentrationUnitOf(type).toString();
}

double Quantity::factor(const SpectMath::SpectrumInfo &info) const
{
    if (!isMass)
        return 1.0;
    // The multiplier of a volume concentration is cubic metres of matter in a cubic metre of air.
    const double milligrams = density * kilogramsPerCubicMetre * info.concentrationUnitOf(type).multiplier;
    return inMicrograms ? milligrams * microgramsPerMilligram : milligrams;
}

} // namespace DataExport
