#include "datafiles/writing/plainfileoutput_flags.h"

#include "util/textescape.h"

#include <QCryptographicHash>

namespace Spectrometer {

namespace {

constexpr char definitionStart[] = "# flag ";

} // namespace

QByteArray FlagIds::writtenText(const QString &text)
{
    return text.contains(QLatin1Char('\n')) ? '"' + escapeText(text).toUtf8() + '"' : text.toUtf8();
}

void FlagIds::readDefinition(const QByteArray &line)
{
    const int begin = int(sizeof definitionStart) - 1, colon = line.indexOf(": ", begin);
    if (line.startsWith(definitionStart) && colon > begin)
        m_texts.insert(line.mid(begin, colon - begin), line.mid(colon + 2));
}

QByteArrayList FlagIds::textsOf(const QByteArray &field) const
{
    QByteArrayList texts;
    if (field.startsWith('!'))
        for (const QByteArray &id : field.mid(1).split('!'))
            texts << m_texts.value(id, id);
    return texts;
}

QByteArray FlagIds::idOf(const FlagPointer &flag, QByteArray *definitions)
{
    const auto known = m_ids.find(flag);
    if (known != m_ids.end())
        return known->second;

    const QByteArray digest = QCryptographicHash::hash(flag->text.toUtf8(), QCryptographicHash::Sha1).toHex();
    const QByteArray text = writtenText(flag->text);
    QByteArray id;
    for (int length = 2; length <= digest.size(); ++length) {
        id = digest.left(length);
        const auto taken = m_texts.constFind(id);
        if (taken == m_texts.constEnd()) {
            m_texts.insert(id, text);
            m_newTexts.push_back(id);
            *definitions += definitionStart + id + ": " + text + '\n';
            break;
        }
        if (*taken == text)
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
