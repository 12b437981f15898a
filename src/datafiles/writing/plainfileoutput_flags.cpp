#include "datafiles/writing/plainfileoutput_flags.h"

#include "util/textescape.h"

#include <QCryptographicHash>

namespace Spectrometer {

namespace {

QByteArray definitionLine(const QByteArray &id, const QString &text)
{
    const QByteArray written = text.contains(QLatin1Char('\n')) ? '"' + escapeText(text).toUtf8() + '"' : text.toUtf8();
    return "# flag " + id + ": " + written + '\n';
}

} // namespace

QByteArray FlagIds::idOf(const FlagPointer &flag, QByteArray *definitions)
{
    const auto known = m_ids.find(flag);
    if (known != m_ids.end())
        return known->second;

    const QByteArray digest = QCryptographicHash::hash(flag->text.toUtf8(), QCryptographicHash::Sha1).toHex();
    QByteArray id;
    for (int length = 2; length <= digest.size(); ++length) {
        id = digest.left(length);
        const auto taken = m_texts.constFind(id);
        if (taken == m_texts.constEnd()) {
            m_texts.insert(id, flag->text);
            m_newTexts.push_back(id);
            *definitions += definitionLine(id, flag->text);
            break;
        }
        if (*taken == flag->text)
            break;
    }
    m_ids.emplace(flag, id);
    m_newFlags.push_back(flag);
    return id;
}

void FlagIds::commit()
{
    m_newFlags.clear();
    m_newTexts.clear();
}

void FlagIds::rollBack()
{
    for (const FlagPointer &flag : m_newFlags)
        m_ids.erase(flag);
    for (const QByteArray &id : m_newTexts)
        m_texts.remove(id);
    commit();
}

void FlagIds::clear()
{
    m_ids.clear();
    m_texts.clear();
    commit();
}

} // namespace Spectrometer
