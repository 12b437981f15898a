#include "gui/common/dataexport/exportsource.h"

#include <QDir>
#include <QFileInfo>

std::pair<int, int> ExportSource::places(const std::optional<Span> &span) const
{
    if (!span)
        return {0, store->size()};
    const SpanIndex &spans = store->recordSpans();
    const auto behind = std::int64_t(spans.lowerBound(ticksOf(span->second)));
    const auto first = std::int64_t(spans.firstEndingFrom(0, ticksOf(span->first) + 1));
    return {int(std::min(first, behind)), int(behind)};
}

DataExport::ExportData ExportSource::dataOf(const std::pair<int, int> &places) const
{
    DataExport::ExportData data;
    data.metadata = uiInfo->metadata();
    for (const auto &info : uiInfo->spectrumInfos())
        data.infos.append(uiInfo->commented(info)); // namesakes are told apart by comments
    data.folder = QDir(folder).absolutePath();
    data.files = files;
    data.first = *store->at(places.first);
    data.last = *store->at(places.second - 1);
    return data;
}

QString ExportSource::outputFolder(const QString &setupPath) const
{
    return setupPath.isEmpty() ? QDir(folder).absolutePath() : QFileInfo(setupPath).absolutePath();
}

DataExport::ExportSetup ExportSource::setupOf(const QVariant &tree, const QString &setupPath) const
{
    DataExport::ExportSetup setup = DataExport::exportSetupFrom(tree);
    QString &file = setup.general.outputFile;
    if (file.trimmed().isEmpty())
        file.clear(); // blanks that are easily typed and never seen
    else
        file = QDir(outputFolder(setupPath)).absoluteFilePath(file);
    return setup;
}
