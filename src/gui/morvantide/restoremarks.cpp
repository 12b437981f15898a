#include "gui/morvantide/restoremarks.h"

#include <QSettings>

namespace {

const QString restoringKey = QStringLiteral("restoring");
constexpr int mostCrashed = 50;

} // namespace

RestoreMarks::RestoreMarks(QSettings &settings)
    : m_settings(settings), m_crashed(settings.value(restoringKey).toStringList().mid(0, mostCrashed))
{
}

void RestoreMarks::begin(const QString &path)
{
    m_begun.append(path);
    write();
}

void RestoreMarks::finish()
{
    if (m_begun.isEmpty())
        return;
    for (const QString &path : qAsConst(m_begun))
        m_crashed.removeAll(path);
    m_begun.clear();
    write();
}

void RestoreMarks::forget(const QString &path)
{
    if (m_crashed.removeAll(path) > 0)
        write();
}

void RestoreMarks::write()
{
    const QStringList marked = m_crashed + m_begun;
    if (marked.isEmpty())
        m_settings.remove(restoringKey);
    else
        m_settings.setValue(restoringKey, marked);
    m_settings.sync();
}
