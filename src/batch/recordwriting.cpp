#include "batch/recordwriting.h"

#include "batch/interrupt.h"
#include "batch/progressline.h"
#include "batch/savetargets.h"

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

bool writeInOrder(Spectrometer::PlainFileOutput &output, const Datastore &store, const QString &verb, bool records,
                  const SpectraSource &spectraOf)
{
    QString day;
    for (int i = 0; i < store.size(); ++i) {
        const Record &record = *store.at(i);
        const QString thisDay = dayText(record);
        if (thisDay != day && Interrupt::requested())
            return false;
        day = thisDay;
        output.writeSpectraRow(record, spectraOf(record), record.spectraProvisional);
        if (records)
            output.writeRecordRow(record);
        if (i % progressEvery == 0)
            ProgressLine::show(QStringLiteral("%1 %2 %3 %4 %")
                                   .arg(verb, day, bar(i, store.size()), QString::number(i * 100LL / store.size())));
    }
    return true;
}

} // namespace Batch
