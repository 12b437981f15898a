#pragma once

#include "datafiles/reading/parsedchunk.h"

#include <QByteArrayList>
#include <QString>

#include <memory>

/// Whole lines that were appended to a file, with what was parsed of them.
struct AppendedRows {
    QString path;
    /// Whether the lines before these were read by someone else: then `context` leads to their block, and there are
    /// that many lines before them.
    bool isResumed = false;
    QByteArrayList context;
    int rowsBefore = 0;
    std::unique_ptr<ParsedChunk> chunk;
    bool isMoreFound = false; ///< more rows were found by the same look
};
