#include "datafiles/writing/plainfileoutput_match.h"

#include <QString>

namespace Spectrometer {

void HeaderMatch::addLine(const QByteArray &line)
{
    if (line == m_header->first())
        m_matched = 1;
    else if (m_matched > 0 && !isComplete())
        m_matched = line == m_header->at(m_matched) ? m_matched + 1 : 0;
}

QString HeaderMatch::message() const
{
    if (isComplete())
        return QStringLiteral("\nmatching header found");
    if (m_matched > 0)
        return QStringLiteral("\npartial header match (%1 of %2), appending new header")
            .arg(QString::number(m_matched), QString::number(m_header->size()));
    return QStringLiteral("\nno matching header found, appending new header");
}

} // namespace Spectrometer
