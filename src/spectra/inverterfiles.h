#pragma once

#include "spectra/inverter.h"

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

/// One file is not as it should be.
class InverterFileError {
public:
    explicit InverterFileError(const QString &message) : m_message(message) {}
    const QString &message() const { return m_message; }

private:
    QString m_message;
};

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

/// One inverter from a file's contents; `path` labels its errors and names an inverter without a name.
/// Throws InverterFileError, UnitParsingError.
InverterPointer readInverterText(const QByteArray &bytes, const QString &path, const UnitTable &unitTable);

/// The paths that a map file names, made absolute against its folder, in key order. Throws InverterFileError.
QStringList readInverterMap(const QString &path);

/// Larger texts are refused unread.
constexpr int largestInverterText = 16 << 20;
/// Rows and columns of a matrix lie between 1 and this.
constexpr int largestMatrixSide = 1000;
/// Packs inflate to no more bytes than this for one chosen path.
constexpr qint64 mostInflation = qint64(256) << 20;

} // namespace SpectMath
