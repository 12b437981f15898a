#include "batch/recordwriting.h"

#include "batch/interrupt.h"
#include "batch/messagecollector.h"
#include "batch/outcome.h"
#include "batch/savetargets.h"
#include "batch/stagedoutput.h"
#include "terminal/progressline.h"

#include <QDir>

namespace Batch {

namespace {

constexpr int progressEvery = 1000; // records
constexpr int barWidth = 30;

QString bar(int done, int all)
{
    const int filled = int(qint64(done) * barWidth / all);
    return QLatin1Char('[') + QString(filled, QLatin1Char('#')) + QString(barWidth - filled, QLatin1Char('-')) +
           QLatin1Char(']');
}

} // namespace

bool writeInOrder(Spectrometer::PlainFileOutput &output, const Datastore &store, int jobs, const QString &verb,
                  const Spectrometer::SpectraSource &spectraOf)
{
    QString day;
    const bool isComplete = Spectrometer::writeRecords(output, store, jobs, spectraOf, [&](int done) {
        if (done == store.size())
            return true;
        const QString thisDay = dayText(*store.at(done));
        if (thisDay != day && Interrupt::requested())
            return false;
        day = thisDay;
        if (done % progressEvery == 0)
            ProgressLine::show(
                QStringLiteral("%1 %2 %3 %4 %")
                    .arg(verb, day, bar(done, store.size()), QString::number(done * 100LL / store.size())),
                done / double(store.size()));
        return true;
    });
    output.closeFiles();
    ProgressLine::clear();
    return isComplete;
}

Spectrometer::PlainFileOutput::RowCounts moveOut(StagedOutput &staged, const QString &folder,
                                                 const Spectrometer::PlainFileOutput &output, Outcome &outcome)
{
    const auto counts = output.counts();
    qint64 standing = 0;
    if (counts.lost > 0) {
        tell(QStringLiteral("\"%1\" is left as it was, since rows are missing.").arg(folder));
    } else {
        const StagedOutput::Moved moved = staged.moveOut();
        outcome.outputLost = !moved.complete;
        for (const QString &name : moved.names)
            standing += output.rowsOfClosedFiles().value(QDir(staged.path()).filePath(name));
    }
    return {standing, counts.written + counts.lost - standing, counts.held, counts.differing};
}

} // namespace Batch
