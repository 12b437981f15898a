#pragma once

#include <QString>
#include <QStringList>

/// The facts that a user should know before saving to a folder.
struct SaveTarget {
    QString folder;
    QString variant;
    QStringList modes;          ///< names of the operating modes that are saved
    bool isReinverting = false; ///< spectra are still being made
};

/// The warnings as rich text; empty if there are none. Looks into the folder, hidden entries included.
QString saveWarnings(const SaveTarget &target);
