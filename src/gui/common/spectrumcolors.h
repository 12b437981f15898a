#pragma once

#include "records/recordmetadata.h"
#include "spectra/spectruminfo.h"

#include <QColor>
#include <QHash>
#include <QList>

#include <vector>

/// Which colours spectra and operating modes get. All colours are of the Tango palette.
namespace SpectrumColors {

/// Colours by the hash of a spectrum's description, so that a description that is rebuilt or read again keeps its own.
using ByHash = QHash<QString, QColor>;

/// One colour for each mode, in order: four well-known names have colours of their own, any other takes the next one of
/// the general palette, which starts anew behind its end.
std::vector<QColor> opmodeColors(const QVector<Opmode> &opmodes);

/// The former colours of those descriptions that are in the list, and new ones for the others: a well-known name's own
/// colour while nothing uses it, else the first among the least used of the palette of its polarity.
ByHash updated(const ByHash &former, const QList<SpectMath::SpectrumInfoPointer> &infos);

/// The palettes that are worked through, in order.
const QList<QColor> &generalPalette();  ///< 17 colours
const QList<QColor> &negativePalette(); ///< 5 colours, for names that end in " neg"
const QList<QColor> &positivePalette(); ///< 5 colours, for names that end in " pos"

} // namespace SpectrumColors
