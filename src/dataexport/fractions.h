#pragma once

#include "spectra/spectruminfo.h"

#include <QString>
#include <QStringList>

#include <utility>
#include <vector>

/// The limits between which concentrations are integrated: arithmetic alone.
namespace DataExport {

using SpectMath::DistributionScale;

/// The lower and the upper limit of a fraction, in nm of diameter or in cm^2/s/V.
using Limits = std::pair<double, double>;

/// Whether a number can be a limit: finite and above 0.
bool isFractionLimit(double value);

/// The unit of limits on diameter or mobility.
const Unit &limitUnit(DistributionScale scale);
/// The grid of a description on diameter or mobility, in that unit.
std::vector<double> gridIn(const SpectMath::SpectrumInfo &info, DistributionScale scale);

struct DecadeFractions {
    bool isEnabled = false;
    DistributionScale scale = DistributionScale::diameter; ///< or mobility
    bool hasRange = false;                                 ///< from and to hold, else the decades of the grid
    double from = 1;
    double to = 1000;
    int perDecade = 1; ///< 1 to 100

    /// Why these can't be made for any grid, in words; null if they can.
    QString fault() const;
    /// Begin and end of the decades that are divided; of a grid that has none, both are NaN.
    Limits range(const std::vector<double> &grid) const;
    /// Pieces of decades, cut at the ends of the grid, ascending. What is narrower than a quarter of a piece is left
    /// out. The last piece isn't cut at the end of the range. None where fault() or range() tell so.
    std::vector<Limits> pieces(const std::vector<double> &grid) const;
};

/// The pairs of neighbours in each line of numbers: "1 3 10" gives 1 to 3 and 3 to 10. A word that can't be a limit is
/// told as an error line and left out.
std::vector<Limits> customFractions(const QString &text, QStringList *errors);

/// Weights whose dot product with a spectrum's concentrations is the concentration between the limits.
RealVector weightsBetween(const SpectMath::SpectrumInfo &info, const Limits &limits, DistributionScale scale,
                          SpectMath::ConcentrationType type);

} // namespace DataExport
