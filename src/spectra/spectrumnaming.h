#pragma once

#include "spectra/spectruminfo.h"

#include <QList>
#include <QString>
#include <QStringList>

/// The names under which people see spectra, in windows and in tables.
namespace SpectrumNaming {

/// One display name for each description, in the list's order. A name that stands once is shown bare; namesakes are
/// told apart by a suffix in brackets: the inverter's name, else the comment, else (or if a namesake before it has
/// taken that suffix) the first four characters of the hash as well.
QStringList displayNames(const QList<SpectMath::SpectrumInfoPointer> &infos);

/// The display name behind which the tag of the run that made the spectrum stands, if it has one.
QString taggedName(const QString &displayName, const QString &tag);

} // namespace SpectrumNaming
