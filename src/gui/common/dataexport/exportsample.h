#pragma once

#include "gui/common/dataexport/exportsource.h"

#include <QStringList>
#include <QVector>

/// The beginning of the table that a setup gives: little enough to be made anew after each change of a setup.
struct ExportSample {
    static constexpr int mostRows = 5;
    static constexpr int mostColumns = 100;
    static constexpr int mostFiles = 3;
    /// Records that are looked at, for those of the modes that are meant.
    static constexpr int mostRecords = 1000;

    QStringList titles;        ///< of the first columns, those of times and mode included
    QVector<QStringList> rows; ///< of the first records
    int columns = 0;           ///< of the whole table
    QStringList files;         ///< of the records that were looked at; whole paths
    bool mayHaveMoreFiles = false;
    QStringList errors; ///< what is wrong with the setup, in words

    /// Of a table of all records, or of those in sight.
    static ExportSample of(const ExportSource &source, const QVariant &setupTree, const QString &setupPath,
                           const std::optional<ExportSource::Span> &span);
};
