#pragma once

#include "datafiles/parsing/newrecord.h"
#include "datafiles/parsing/textview.h"

#include <memory>
#include <vector>

class LineReader;
struct RowLayout;

/// Where the numbers of a row stand: one for each electrometer, or each slot of a variable. Owned elsewhere.
struct RowNumbers {
    double *currents;
    double *currentVariances;
    double *rawCurrents;
    double *voltages;
    double *variables;

    static RowNumbers of(Record &record);
    /// In one stretch: four times as many as there are electrometers, and then the variables.
    static RowNumbers in(double *numbers, std::size_t electrometers);
};

/// One line of a block, parsed before its record is known. Texts are views into the line.
struct ParsedRow {
    TextView line;
    const LineReader *parser = nullptr; ///< null: nothing was parsed, and the line is to be read as it stands
    bool isOutside = false;             ///< of the limits; nothing else was parsed then
    RowTimes times;
    TextView mode;
    TextView flags;                 ///< the field of flags, if the row has one
    std::shared_ptr<Record> record; ///< with the row's numbers, if the row was expected to be the first of its moment
    std::size_t firstNumber = 0;    ///< of ParsedRows::numbers, where there is no such record
    std::size_t firstSpectrum = 0;  ///< of ParsedRows::spectra
    std::size_t spectrumCount = 0;
};

/// A spectrum without its description, which is that of a column of the block.
struct ParsedSpectrum {
    int column = 0;
    std::shared_ptr<SpectMath::Spectrum> spectrum;
};

/// Many lines with all that was parsed of them.
struct ParsedRows {
    std::vector<ParsedRow> rows;
    std::vector<double> numbers;
    std::vector<ParsedSpectrum> spectra;
    std::size_t bytes = 0;     ///< of the records and spectra
    std::size_t inRecords = 0; ///< rows that were placed, and for which a record of their own was of use, or would be

    /// Makes room for the numbers of a row, NaN at first: in a record of its own, or in `numbers`.
    RowNumbers addNumbers(ParsedRow &row, bool inRecord, const RowLayout &layout);
    /// Those numbers again.
    RowNumbers numbersOf(const ParsedRow &row);
    void addSpectrum(ParsedRow &row, int column, std::shared_ptr<SpectMath::Spectrum> spectrum);
    /// Forgets all, but keeps the memory of the lists.
    void clear();
    /// The memory that all of it takes.
    std::size_t memory() const;
};
