#pragma once

#include "gui/common/uiinfo.h"
#include "spectra/inverter.h"

#include <QHash>

/// What the user has added to open data, and their files don't hold: it outlasts that these are read again.
class Rereading {
public:
    /// Takes note of it while the data are open.
    Rereading(const UiInfo &uiInfo, SpectMath::InverterList inverters);

    /// Those in use, by which the records are to be inverted again.
    const SpectMath::InverterList &inverters() const { return m_inverters; }
    /// Gives spectra that have come back the comments that the user gave them.
    void restoreComments(UiInfo &uiInfo) const;

private:
    SpectMath::InverterList m_inverters;
    QHash<QString, QString> m_comments; ///< by hash
};
