#include "batch/recordwriting.h"

#include "batch/interrupt.h"
#include "batch/savetargets.h"
#include "terminal/progressline.h"

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
    return Spectrometer::writeRecords(output, store, jobs, spectraOf, [&](int done) {
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
}

} // namespace Batch
