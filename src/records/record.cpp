#include "records/record.h"

#include "util/slabarray.h"

Record::Record(const Spectrometer::FullRecord &full)
    : Spectrometer::FullRecord(full), midTime(Spectrometer::middleOf(full.beginTime, full.endTime))
{
}

std::shared_ptr<Record> makeRecord()
{
    return std::allocate_shared<Record>(SlabAllocator<Record>());
}

std::shared_ptr<Record> makeRecord(const Spectrometer::FullRecord &full)
{
    return std::allocate_shared<Record>(SlabAllocator<Record>(), full);
}
