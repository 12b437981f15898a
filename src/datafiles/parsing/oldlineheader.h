#pragma once

#include "datafiles/parsing/filereaderstate.h"
#include "datafiles/parsing/rowlayout.h"
#include "datafiles/parsing/valuereader.h"

/// The header of an old-style block: lines of free text, of which some describe columns. Adds its news to the state of
/// the read. A line whose columns contradict earlier ones gets a DummyReader, so that the rest of the block can be
/// read.
class OldLineHeader {
public:
    using ValueReaderPointer = std::shared_ptr<ValueReader>;

    /// The trimmed lines behind the header's first one; the last is the column row. Throws FileReaderError; what was
    /// added to the state before a fault stays.
    OldLineHeader(const QList<QByteArray> &lines, FileReaderState *state);

    /// Whether a line is of a known kind; all others are comments.
    static bool isKnown(const QByteArray &line);

    /// The layout of the block's rows.
    RowLayout layout() const;
    const QList<ValueReaderPointer> &valueReaders() const { return m_valueReaders; } ///< in the order of the header
    int fieldCount() const { return m_fieldCount; }                                  ///< of a row
    bool hasOpmode() const { return m_hasOpmode; }                                   ///< as the third field

private:
    void readLine(const QString &line);
    void readColumnRow(const QByteArray &line);
    void readModes(const QString &text);
    ValueReaderPointer makeDiagnostics(const QString &text, bool withVoltages);
    ValueReaderPointer makeElectrometers(const QString &text, bool raw);
    bool readGroups(const QString &text, int count);
    ValueReaderPointer makeSpectrum(const QString &text);
    void warn(const QString &text) const;

    Log::Logger m_logger;
    FileReaderState *m_state;
    QList<ValueReaderPointer> m_valueReaders;
    int m_fieldCount = 0;
    bool m_hasOpmode = false;
};
