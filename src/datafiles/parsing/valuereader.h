#pragma once

#include "datafiles/parsing/fieldsplitter.h"
#include "datafiles/parsing/filereaderstate.h"

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

/// Reads a stretch of the columns of an old-style row.
class ValueReader {
public:
    explicit ValueReader(int columns) : fieldCount(columns) {}
    virtual ~ValueReader() = default;

    /// Takes its columns of the row into the record, which is wide enough for all that is known. Throws
    /// ValueParsingError.
    virtual void read(const FieldSplitter &row, const std::shared_ptr<Record> &record) = 0;

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
    void read(const FieldSplitter &, const std::shared_ptr<Record> &) override {}
};

/// Each field into the record's variables at the slot for its column; a slot below 0 is passed over.
class DiagnosticsReader : public ValueReader {
public:
    explicit DiagnosticsReader(const QVector<int> &variableSlots);
    void read(const FieldSplitter &row, const std::shared_ptr<Record> &record) override;

private:
    QVector<int> m_slots;
};

/// Currents and then their standard deviations, or raw currents alone. An empty field or one that is no number is NaN.
class ElectrometersReader : public ValueReader {
public:
    ElectrometersReader(int channels, bool raw);
    void read(const FieldSplitter &row, const std::shared_ptr<Record> &record) override;

private:
    int m_channels;
    bool m_raw;
};

/// Concentrations and then their standard deviations. An empty field drops the whole spectrum of the row; a field that
/// is no number throws.
class SpectrumReader : public ValueReader {
public:
    SpectrumReader(const SpectMath::SpectrumInfoPointer &info, FileReaderState *state);
    void read(const FieldSplitter &row, const std::shared_ptr<Record> &record) override;

private:
    SpectMath::SpectrumInfoPointer m_info;
    FileReaderState *m_state;
};

/// The number that QString::toDouble() sees in the text, and whether it sees one.
bool readOldNumber(TextView text, double *value);
