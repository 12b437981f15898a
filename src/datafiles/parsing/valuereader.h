#pragma once

#include "datafiles/parsing/fieldsplitter.h"
#include "datafiles/parsing/parsedrows.h"
#include "datafiles/parsing/rowlayout.h"

#include <QString>
#include <QVector>

#include <memory>

/// A value that spoils its stretch of a row, or a header line that can't be understood.
class ValueParsingError {
public:
    explicit ValueParsingError(const QString &message) : m_message(message) {}
    const QString &message() const { return m_message; }

private:
    QString m_message;
};

/// Reads a stretch of the columns of an old-style row. Changes no more once its first column is known, so that several
/// threads may read with it.
class ValueReader {
public:
    explicit ValueReader(int columns) : fieldCount(columns) {}
    virtual ~ValueReader() = default;

    /// Takes its columns of the row into the numbers of a record that is wide enough for all that is known.
    virtual void read(const FieldSplitter &, const RowNumbers &) const {}
    /// Copies what read() takes.
    virtual void copy(const RowNumbers &, const RowNumbers &) const {}
    /// The spectrum in its columns, without a description; null if there is none. Throws ValueParsingError.
    virtual std::shared_ptr<SpectMath::Spectrum> readSpectrum(const FieldSplitter &) const { return nullptr; }
    /// The description of that spectrum, null for columns without one.
    virtual SpectMath::SpectrumInfoPointer spectrumInfo() const { return nullptr; }
    /// Adds its columns and groups of numbers to a layout.
    virtual void describe(RowLayout &layout) const = 0;

    const int fieldCount; ///< columns taken
    int firstColumn = 0;  ///< of the row

protected:
    /// A field of this stretch, trimmed.
    TextView field(const FieldSplitter &row, int index) const
    {
        return trimmed(row[std::size_t(firstColumn) + std::size_t(index)]);
    }
};

/// Holds the place of columns that are ignored.
class DummyReader : public ValueReader {
public:
    using ValueReader::ValueReader;
    void describe(RowLayout &layout) const override;
};

/// Each field into the record's variables at the slot for its column; a slot below 0 is passed over.
class DiagnosticsReader : public ValueReader {
public:
    explicit DiagnosticsReader(const QVector<int> &variableSlots);
    void read(const FieldSplitter &row, const RowNumbers &numbers) const override;
    void copy(const RowNumbers &from, const RowNumbers &to) const override;
    void describe(RowLayout &layout) const override;

private:
    QVector<int> m_slots;
};

/// Currents and then their standard deviations, or raw currents alone, of all electrometers. An empty field or one that
/// is no number is NaN.
class ElectrometersReader : public ValueReader {
public:
    ElectrometersReader(int channels, bool raw);
    void read(const FieldSplitter &row, const RowNumbers &numbers) const override;
    void copy(const RowNumbers &from, const RowNumbers &to) const override;
    void describe(RowLayout &layout) const override;

private:
    int m_channels;
    bool m_raw;
};

/// Concentrations and then their standard deviations. An empty field drops the whole spectrum of the row; a field that
/// is no number throws.
class SpectrumReader : public ValueReader {
public:
    explicit SpectrumReader(const SpectMath::SpectrumInfoPointer &info);
    std::shared_ptr<SpectMath::Spectrum> readSpectrum(const FieldSplitter &row) const override;
    SpectMath::SpectrumInfoPointer spectrumInfo() const override { return m_info; }
    void describe(RowLayout &layout) const override;

private:
    SpectMath::SpectrumInfoPointer m_info;
};

/// The number that QString::toDouble() sees in the text, and whether it sees one.
bool readOldNumber(TextView text, double *value);
