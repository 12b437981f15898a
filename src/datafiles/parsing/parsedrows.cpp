#include "datafiles/parsing/parsedrows.h"

#include "datafiles/parsing/linereader.h"

static_assert(std::is_nothrow_move_constructible_v<ParsedRow>, "a list of rows that grows copies no numbers");

RowNumbers RowNumbers::of(Record &record)
{
    return {record.currents.data().begin(), record.currentVariances.data().begin(), record.rawCurrents.data().begin(),
            record.voltages.data().begin(), record.variables.data().begin()};
}

RowNumbers RowNumbers::of(RecordNumbers &numbers)
{
    return {numbers.currents.begin(), numbers.currentVariances.begin(), numbers.rawCurrents.begin(),
            numbers.voltages.begin(), numbers.variables.begin()};
}

RowNumbers RowNumbers::in(double *numbers, const RowLayout &layout)
{
    const std::size_t electrometers = layout.groups.any() ? layout.electrometers : 0;
    return {numbers, numbers + electrometers, numbers + 2 * electrometers, numbers + 3 * electrometers,
            numbers + 4 * electrometers};
}

RowNumbers ParsedRows::addNumbers(ParsedRow &row, RowExpectation expected, const RowLayout &layout)
{
    if (expected.newRecord) {
        row.record = makeRecord(row.times);
        bytes += sizeof(Record);
    }
    const std::size_t count = layout.groups.any() ? 4 * layout.electrometers + layout.variables : 0;
    if (expected.newNumbers) {
        row.hasOwnNumbers = true;
        widenVectors(row.ownNumbers, layout.groups, layout.electrometers, layout.variables);
        bytes += sizeof(double) * count;
        return RowNumbers::of(row.ownNumbers);
    }
    row.firstNumber = numbers.size();
    numbers.resize(numbers.size() + count, noValue);
    return RowNumbers::in(numbers.data() + row.firstNumber, layout);
}

RowNumbers ParsedRows::numbersOf(ParsedRow &row)
{
    return row.hasOwnNumbers ? RowNumbers::of(row.ownNumbers)
                             : RowNumbers::in(numbers.data() + row.firstNumber, row.parser->layout());
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
    newRecords = newNumbers = 0;
}

std::size_t ParsedRows::memory() const
{
    return bytes + rows.capacity() * sizeof(ParsedRow) + numbers.capacity() * sizeof(double) +
           spectra.capacity() * sizeof(ParsedSpectrum);
}
