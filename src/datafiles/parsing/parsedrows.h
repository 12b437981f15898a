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
    static RowNumbers of(RecordNumbers &numbers);
    /// In one stretch: four times as many as there are electrometers, and then the variables. Of rows without any group
    /// of numbers nothing stands there, and `numbers` may be null.
    static RowNumbers in(double *numbers, const RowLayout &layout);
};

/// One line of a block, parsed before its record is known. Texts are views into the line.
struct ParsedRow {
    TextView line;
    const LineReader *parser = nullptr; ///< null: nothing was parsed, and the line is to be read as it stands
    bool isOutside = false;             ///< of the limits; nothing else was parsed then
    RowTimes times;
    TextView mode;
    TextView flags;                 ///< the field of flags, if the row has one
    std::shared_ptr<Record> record; ///< without numbers, if the row was expected to be the first of its moment
    bool hasOwnNumbers = false;     ///< which a record may take over; else they stand in ParsedRows::numbers
    RecordNumbers ownNumbers;
    std::size_t firstNumber = 0;
    std::size_t firstSpectrum = 0; ///< of ParsedRows::spectra
    std::size_t spectrumCount = 0;
};

/// A spectrum without its description, which is that of a column of the block.
struct ParsedSpectrum {
    int column = 0;
    std::shared_ptr<SpectMath::Spectrum> spectrum;
};

/// What is expected of rows, for the memory in which they are made.
struct RowExpectation {
    bool newRecord = true;  ///< the row is the first one of its moment
    bool newNumbers = true; ///< or at least the first one with numbers of its groups
};

/// Many lines with all that was parsed of them.
struct ParsedRows {
    std::vector<ParsedRow> rows;
    std::vector<double> numbers;
    std::vector<ParsedSpectrum> spectra;
    std::size_t bytes = 0; ///< of records, their numbers and spectra
    // Of the rows that were placed:
    std::size_t newRecords = 0; ///< that were the first ones of their moments
    std::size_t newNumbers = 0; ///< or at least the first ones with numbers of their groups

    /// Makes a row's record, if one is expected to be wanted, and room for its numbers, NaN at first: of its own, or in
    /// `numbers`.
    RowNumbers addNumbers(ParsedRow &row, RowExpectation expected, const RowLayout &layout);
    /// Those numbers again.
    RowNumbers numbersOf(ParsedRow &row);
    void addSpectrum(ParsedRow &row, int column, std::shared_ptr<SpectMath::Spectrum> spectrum);
    /// Forgets all, but keeps the memory of the lists.
    void clear();
    /// The memory that all of it takes.
    std::size_t memory() const;
};
