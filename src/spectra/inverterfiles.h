#pragma once

#include "spectra/inverterreader.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

namespace Log {
class Logger;
}

/// Inverters from the files that a user chooses: inverter files (.inverter, .sinv), map files (.invmap) that name
/// others, packs (.sinp, .zip) and folders. Loading runs on the caller's thread.
namespace SpectMath {

/// Called with each path, and each inverter's entry in a pack, before it is read; false ends the loading there.
using LoadingStep = std::function<bool(const QString &path)>;

/// Walks the path: a file by its suffix, a folder with all that is in it, or a pack with an entry prefix behind its
/// name ("pack.zip/opmode1"). A file that is met again on the walk, such as a file that a map names twice, is read
/// once. Packs inflate to no more than mostInflation on one walk. A fault that costs one inverter only is appended to
/// *errors (may be null). Throws InverterFileError for a map file and UnitParsingError for a unit text; the inverters
/// read until then are lost.
InverterList loadInverters(const QString &path, const UnitTable &unitTable, QStringList *errors,
                           const LoadingStep &step = {});
/// The same over a list of paths in order, results appended.
InverterList loadInverters(const QStringList &paths, const UnitTable &unitTable, QStringList *errors);

/// The same over paths that a user chose: each is walked by itself, and an exception costs its path alone, told in
/// *errors like the rest.
InverterList loadChosenInverters(const QStringList &paths, const UnitTable &unitTable, QStringList *errors,
                                 const LoadingStep &step = {});

/// Logs the errors of a loading, if there were any, and whether there are others to use.
void tellLoadingErrors(const Log::Logger &log, const QStringList &errors, bool othersAreUsed);

/// Packs inflate to no more bytes than this for one chosen path.
constexpr qint64 mostInflation = qint64(256) << 20;

} // namespace SpectMath
