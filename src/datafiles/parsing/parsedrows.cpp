#include "datafiles/parsing/parsedrows.h"

#include "datafiles/parsing/linereader.h"

RowNumbers RowNumbers::of(Record &record)
{
    return {record.currents.data().begin(), record.currentVariances.data().begin(), record.rawCurrents.data().begin(),
            record.voltages.data().begin(), record.variables.data().begin()};
}

RowNumbers RowNumbers::in(double *numbers, std::size_t electrometers)
{
    return {numbers, numbers + electrometers, numbers + 2 * electrometers, numbers + 3 * electrometers,
            numbers + 4 * electrometers};
}

RowNumbers ParsedRows::addNumbers(ParsedRow &row, bool inRecord, const RowLayout &layout)
{
    const std::size_t count = layout.groups.any() ? 4 * layout.electrometers + layout.variables : 0;
    if (inRecord) {
        row.record = makeRecord(row.times);
        widenRecord(*row.record, layout.groups, layout.electrometers, layout.variables);
        bytes += sizeof(Record) + sizeof(double) * count;
        return RowNumbers::of(*row.record);
    }
    row.firstNumber = numbers.size();
    numbers.resize(numbers.size() + count, noValue);
    return RowNumbers::in(numbers.data() + row.firstNumber, layout.electrometers);
}

RowNumbers ParsedRows::numbersOf(const ParsedRow &row)
{
    return row.record ? RowNumbers::of(*row.record)
                      : RowNumbers::in(numbers.data() + row.firstNumber, row.parser->layout().electrometers);
}

void ParsedRows::addSpectrum(ParsedRow &row, int column, std::shared_ptr<SpectMath::Spectrum> spectrum)
{
    if (row.spectrumCount++ == 0)
        row.firstSpectrum = spectra.size();
    bytes += sizeof(SpectMath::Spectrum) + 2 * sizeof(double) * spectrum->concentrations.size();
    spectra.push_back({column, std::move(spectrum)});
}

void ParsedRows::clear()
{
    rows.clear();
    numbers.clear();
    spectra.clear();
    bytes = 0;
    inRecords = 0;
}

std::size_t ParsedRows::memory() const
{
    return bytes + rows.capacity() * sizeof(ParsedRow) + numbers.capacity() * sizeof(double) +
           spectra.capacity() * sizeof(ParsedSpectrum);
}
