#include "datafiles/reading/errorrun.h"

bool ErrorRun::extend(const QString &message, int row)
{
    if (m_message.isNull() || message != m_message)
        return false;
    m_lastRow = row;
    return true;
}

void ErrorRun::begin(const QString &message, int row)
{
    m_message = message;
    m_firstRow = row;
    m_lastRow = row;
}

bool ErrorRun::flush()
{
    if (m_message.isNull())
        return false;
    if (m_firstRow == m_lastRow)
        m_text = QStringLiteral("File %1, row %2: %3").arg(m_fileName, QString::number(m_firstRow), m_message);
    else
        m_text = QStringLiteral("File %1, rows %2 to %3: %4")
                     .arg(m_fileName, QString::number(m_firstRow), QString::number(m_lastRow), m_message);
    m_message = QString();
    return true;
}
