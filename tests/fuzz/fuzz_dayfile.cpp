#include "fuzzdayfile.h"

namespace {

void checkRecords(const FileReader &reader, std::size_t bytes)
{
    const auto &records = reader.datastore()->records();
    const auto &metadata = *reader.metadata();
    std::size_t held = 0;
    RecordTime last = earliestRecordTime;
    for (const auto &record : records) {
        require(last < record->beginTime, "records stand in order, each moment once");
        last = record->beginTime;
        require(!isMissing(record->endTime), "each record has an end");
        require(record->opmode >= -1 && record->opmode < metadata.opmodes.size(), "modes are known");
        require(record->currents.size() == std::size_t(metadata.totalElectrometers) &&
                    record->voltages.size() == record->currents.size() &&
                    record->rawCurrents.size() == record->currents.size() &&
                    record->currentVariances.size() == record->currents.size() &&
                    record->variables.size() == std::size_t(metadata.variableCount),
                "records are as wide as what is known");
        held += sizeof(double) * (4 * record->currents.size() + record->variables.size());
        held += record->flags.capacity() * sizeof record->flags[0];
        for (const auto &spectrum : record->spectra) {
            require(spectrum->isValid(), "spectra fit their descriptions");
            held += sizeof *spectrum + 2 * sizeof(double) * spectrum->concentrations.size();
        }
    }
    require(held <= (std::size_t(64) << 20) + 1024 * records.size() + 10 * bytes, "memory is in proportion");
}

} // namespace

/// The bytes are a day file, with all its headers and rows, which is read twice in a row.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const DayFileRead read(fuzzFile(data, size), 2);
    const FileReader &reader = read.reader();
    checkRecords(reader, 2 * size);
    require(reader.statistics().bytes == std::int64_t(2 * size), "all bytes are looked at");
    require(reader.statistics().ignoredRows <= reader.statistics().rows, "no line is lost twice");
    return 0;
}
