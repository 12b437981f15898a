#pragma once

#include "batch/folderread.h"

#include <QList>
#include <QPair>

#include <cstdint>

namespace Batch {

/// The facts about a folder that a user asks for.
struct Summary {
    struct Spectrum {
        QString name; ///< bare
        QString inverter;
        QString id;
        int points = 0;
        QString unit;
        std::int64_t records = 0;
        std::int64_t empty = 0; ///< records whose spectrum holds no number
    };
    struct Flag {
        QString type; ///< "note", "warning", "failure"
        QString message;
        std::int64_t records = 0; ///< occurrences
    };

    int files = 0;
    std::int64_t rows = 0;
    std::int64_t ignoredRows = 0;
    std::int64_t bytes = 0;
    double seconds = 0;
    std::int64_t records = 0;
    QString begin; ///< local text with the offset, as in rows; empty without records
    QString end;
    QList<QPair<QString, std::int64_t>> modes; ///< in the metadata's order, then "" for records of an unknown mode
    int electrometers = 0;
    QStringList variables;
    QList<Spectrum> spectra; ///< in display order
    QList<Flag> flags;       ///< in order of first occurrence
};

Summary makeSummary(const FolderRead &read);

} // namespace Batch
