#include "gui/common/recordviews/distribution/distributionsummary.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace RecordViews {

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(DistributionSummary)
};

QString numberText(double value, int digits)
{
    return std::isfinite(value) ? QString::number(value, 'g', digits) : QStringLiteral("?");
}

} // namespace

DistributionSummary distributionSummary(const SpectMath::Spectrum &spectrum)
{
    DistributionSummary result;
    if (!spectrum.isValid())
        return result;
    const RealVector weights = spectrum.info->totalWeights(SpectMath::ConcentrationType::number);
    const RealVector &c = spectrum.concentrations;
    const RealVector diameters = spectrum.info->points(SpectMath::DistributionScale::diameter);
    const double total = SpectMath::concentrationOf(spectrum, weights);
    if (!std::isfinite(total) || diameters.size() != c.size())
        return result;
    result.total = total;

    double number = 0;
    double logSum = 0;
    double squareSum = 0;
    const auto eachPart = [&](auto visit) {
        for (std::size_t i = 0; i < c.size(); ++i) {
            if (weights[i] * c[i] > 0 && diameters[i] > 0)
                visit(weights[i] * c[i], std::log(diameters[i]));
        }
    };
    eachPart([&](double part, double logDiameter) {
        number += part;
        logSum += part * logDiameter;
    });
    if (!(number > 0))
        return result;
    const double logMean = logSum / number;
    eachPart([&](double part, double logDiameter) {
        squareSum += part * (logDiameter - logMean) * (logDiameter - logMean);
    });
    result.geometricMean = std::exp(logMean);
    result.geometricDeviation = std::exp(std::sqrt(squareSum / number));
    result.mode = diameters[std::size_t(std::max_element(c.begin(), c.end()) - c.begin())];
    return result;
}

QString summaryText(const DistributionSummary &summary, const SpectMath::SpectrumInfo &info, const QString &name)
{
    if (std::isnan(summary.total))
        return Words::tr("%1: no values").arg(name);
    const QString size = info.sizeUnit.toString();
    return Words::tr("%1: total %2 %3, GMD %4 %5, GSD %6, mode %7 %8")
        .arg(name, numberText(summary.total, 4), info.concentrationUnit.toString(),
             numberText(summary.geometricMean, 3), size, numberText(summary.geometricDeviation, 3),
             numberText(summary.mode, 3), size);
}

QString summaryText(const SpectMath::Spectrum &spectrum, const QString &name)
{
    return spectrum.status == 0 ? summaryText(distributionSummary(spectrum), *spectrum.info, name)
                                : Words::tr("%1: inversion failed").arg(name);
}

} // namespace RecordViews
