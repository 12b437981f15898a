#pragma once

#include "dataexport/exportdata.h"
#include "dataexport/exportsetup.h"
#include "gui/common/uiinfo.h"
#include "store/datastore.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>

/// The open data, as exports see them. A plain value; main thread only.
struct ExportSource {
    using Span = std::pair<RecordTime, RecordTime>;

    std::shared_ptr<Datastore> store; ///< never empty; null without data
    std::shared_ptr<const UiInfo> uiInfo;
    QString folder;
    QStringList files;                 ///< names in the folder, or whole paths
    std::function<Span()> visibleSpan; ///< begin and end of what the time axis shows

    /// The places of the records from the first to behind the last that touch the span; all records without one.
    std::pair<int, int> places(const std::optional<Span> &span) const;
    /// What a table of these records, which aren't none, is made of. Labels follow the names that the views show.
    DataExport::ExportData dataOf(const std::pair<int, int> &places) const;
    /// What relative output files are relative to: the folder of the setup's file, or that of the data where it has none.
    QString outputFolder(const QString &setupPath) const;
    /// Understands the tree of a setup. Its output file becomes a whole path. Throws DataExport::SetupError.
    DataExport::ExportSetup setupOf(const QVariant &tree, const QString &setupPath) const;
};
