#pragma once

#include "demo/instrument.h"
#include "spectra/inverter.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace Demo {

/// An inverter file that fits the instrument in one mode and polarity, and the inverter that is read from it.
struct InverterFile {
    Mode mode;
    Polarity polarity;
    QString name; ///< of the file
    QByteArray text;
    SpectMath::InverterPointer inverter;
};

/// The points of the axis on which densities are published: mobilities in cm^2/V/s for ions, radii in nm for particles.
RealVector publishedPoints(Mode mode);
/// The classes of the inversion. They reach beyond the published points on both sides, so that particles beyond aren't
/// taken for particles at the ends.
RealVector classPoints(Mode mode);

/// Ions and particles, negative first.
std::vector<InverterFile> makeInverterFiles(const Instrument &instrument);

/// Writes the files, "demo.invmap" that names them, and the pack "demo.sinp" with all of them into a folder, which is
/// made. False if that failed; the reason is logged.
bool writeInverterFiles(const std::vector<InverterFile> &files, const QString &folder);
/// Writes a pack of inverters that are called "smooth": the same but for smoothing over neighbouring points. False if
/// that failed; the reason is logged.
bool writeSmoothPack(const Instrument &instrument, const QString &path);

} // namespace Demo
