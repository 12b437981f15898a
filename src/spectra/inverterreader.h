#pragma once

#include "spectra/inverter.h"
#include "spectra/unitparser.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The texts of inverter files and map files as values.
namespace SpectMath {

/// A fault in an inverter file or a map file.
class InverterFileError {
public:
    explicit InverterFileError(const QString &message) : m_message(message) {}
    const QString &message() const { return m_message; }

private:
    QString m_message;
};

/// One inverter from a file's contents; `path` labels its errors and names an inverter without a name.
/// Throws InverterFileError, UnitParsingError.
InverterPointer readInverterText(const QByteArray &bytes, const QString &path, const UnitTable &unitTable);

/// The paths that a map file names, made absolute against its folder, in key order. Throws InverterFileError.
QStringList readInverterMap(const QString &path);

/// Larger texts are refused unread.
constexpr int largestInverterText = 16 << 20;
/// Rows and columns of a matrix lie between 1 and this.
constexpr int largestMatrixSide = 1000;

} // namespace SpectMath
