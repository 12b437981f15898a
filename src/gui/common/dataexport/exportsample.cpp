#include "gui/common/dataexport/exportsample.h"

#include "dataexport/exportnaming.h"
#include "dataexport/exporttable.h"

namespace {

// Splits lines into what their fields hold: no value has it.
const QString splitter = QString(QChar(0x1f));

QStringList fieldsOf(const QByteArray &line)
{
    return QString::fromUtf8(line).chopped(1).split(splitter);
}

void addRecords(ExportSample &sample, const ExportSource &source, const std::pair<int, int> &places,
                const DataExport::ExportTable &table, DataExport::ExportNaming &naming)
{
    const int behind = std::min(places.second, places.first + ExportSample::mostRecords);
    for (int place = places.first; place < behind; ++place) {
        const Record &record = *source.store->at(place);
        if (!table.takes(record))
            continue;
        const QString &path = naming.pathOf(record);
        if (!sample.files.contains(path) && sample.files.size() < ExportSample::mostFiles)
            sample.files << path;
        else if (!sample.files.contains(path))
            sample.mayHaveMoreFiles = true;
        if (sample.rows.size() >= ExportSample::mostRows)
            continue;
        DataExport::DelimitedLine line = table.emptyLine();
        table.addLine(record, line);
        sample.rows << fieldsOf(QByteArray(line.data(), int(line.size()))).mid(0, ExportSample::mostColumns);
    }
}

} // namespace

ExportSample ExportSample::of(const ExportSource &source, const QVariant &setupTree, const QString &setupPath,
                              const std::optional<ExportSource::Span> &span)
{
    ExportSample sample;
    DataExport::ExportSetup setup;
    try {
        setup = source.setupOf(setupTree, setupPath);
    } catch (const DataExport::SetupError &error) {
        sample.errors << error.message();
        return sample;
    }
    const std::pair<int, int> places = source.places(span);
    if (places.first == places.second)
        return sample;
    setup.general.separator = splitter;
    setup.general.commentLines = false;
    DataExport::ExportData data = source.dataOf(places);
    data.isPreview = true;
    const DataExport::ExportTable table(setup, data);
    DataExport::ExportNaming naming(setup.general, data.metadata);
    sample.errors = setup.errors + table.errors();
    const QStringList titles = fieldsOf(table.head());
    sample.columns = titles.size();
    sample.titles = titles.mid(0, mostColumns);
    addRecords(sample, source, places, table, naming);
    const bool hasSeveralFiles = setup.general.addDate || setup.general.addOpmode;
    sample.mayHaveMoreFiles |= hasSeveralFiles && places.second - places.first > mostRecords;
    if (!naming.fault().isNull())
        sample.files.clear();
    return sample;
}
