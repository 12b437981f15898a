#pragma once

#include <QByteArray>
#include <QList>

namespace Spectrometer {

/// Decides whether the last header of a file is the one that is about to be written, so that the file can be continued.
/// Fed with all lines of the file, without their line feeds.
class HeaderMatch {
public:
    /// The header must have lines, and outlive this object.
    explicit HeaderMatch(const QList<QByteArray> &header) : m_header(&header) {}

    /// A first header line starts a match from any state; a complete header stays matched through the rows that follow
    /// it; inside a header any line that differs ends the match.
    void addLine(const QByteArray &line);

    int matched() const { return m_matched; }
    bool isComplete() const { return m_matched == m_header->size(); }
    /// "\nmatching header found", or the difference found and that a header is appended.
    QString message() const;

private:
    const QList<QByteArray> *m_header;
    int m_matched = 0;
};

} // namespace Spectrometer
