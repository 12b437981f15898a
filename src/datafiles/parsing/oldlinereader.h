#pragma once

#include "datafiles/parsing/filereaderstate.h"
#include "datafiles/parsing/linereader.h"
#include "datafiles/parsing/valuereader.h"

/// Understands one block of an old-style, comma-separated file. Its header is lines of free text; each that describes
/// columns becomes a ValueReader, in the order of the header. A stretch that doesn't suit what the read knows already
/// is stepped over, and the rest of the block is read.
class OldLineReader : public LineReader {
public:
    /// The trimmed header lines behind the first one; the last is the column row. The state must outlive the reader.
    /// Throws FileReaderError.
    OldLineReader(const QList<QByteArray> &lines, FileReaderState *state);

    bool readRow(QByteArray line) override;

private:
    using ValueReaderPointer = std::shared_ptr<ValueReader>;

    void readHeaderLine(const QString &line);
    void readColumnRow(const QByteArray &line);
    void readModes(const QString &text);
    ValueReaderPointer makeDiagnostics(const QString &text, bool withVoltages);
    ValueReaderPointer makeElectrometers(const QString &text, bool raw);
    bool readGroups(const QString &text, int count);
    ValueReaderPointer makeSpectrum(const QString &text);
    std::shared_ptr<SpectMath::SpectrumInfo> makeSpectrumInfo(const QStringList &parts, const RealVector &points) const;
    void warn(const QString &text) const;

    Log::Logger m_logger;
    FileReaderState *m_state;
    QList<ValueReaderPointer> m_valueReaders;
    int m_fieldCount = 0;
    bool m_hasOpmode = false;
};
