#pragma once

#include "spectra/unit.h"

#include <QMap>

using UnitTable = QMap<QString, Unit>;
/// The eleven known unit names: m kg s A K mol cd V nm cm kV.
UnitTable makeUnitTable();
/// The process's table, built at its first use and read-only from then on.
const UnitTable &unitTable();

namespace SpectMath {

class UnitParsingError {
public:
    explicit UnitParsingError(const QString &message) : m_message(message) {}
    const QString &message() const { return m_message; }

private:
    QString m_message;
};

/// Reads a unit text such as "1/cm^3", strictly left to right, no parentheses. The result is named `name`, or by the
/// text if that is null. Throws UnitParsingError.
Unit parseUnit(const QString &text, const UnitTable &table, const QString &name = QString());

} // namespace SpectMath
