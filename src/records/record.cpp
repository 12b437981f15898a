#include "records/record.h"

Record::Record(const Spectrometer::FullRecord &full)
    : Spectrometer::FullRecord(full), midTime(Spectrometer::middleOf(full.beginTime, full.endTime))
{
}
