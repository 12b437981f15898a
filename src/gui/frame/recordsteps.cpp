#include "gui/frame/recordsteps.h"

#include "gui/common/commentmap.h"
#include "gui/frame/shownrecord.h"

#include <QAction>
#include <QKeySequence>

RecordSteps::RecordSteps(ShownRecord *shown, QObject *parent) : QObject(parent), m_shown(shown)
{
    addStep(tr("Next comment"), Qt::Key_F3, &RecordSteps::goToComment, 1);
    addStep(tr("Previous comment"), Qt::SHIFT + Qt::Key_F3, &RecordSteps::goToComment, -1);
    addStep(tr("Next flagged record"), Qt::Key_F8, &RecordSteps::goToFlag, 1);
    addStep(tr("Previous flagged record"), Qt::SHIFT + Qt::Key_F8, &RecordSteps::goToFlag, -1);
    updateActions();
}

void RecordSteps::addStep(const QString &text, const QKeySequence &key, void (RecordSteps::*go)(int step), int step)
{
    auto *const action = new QAction(text, this);
    action->setShortcut(key);
    connect(action, &QAction::triggered, this, [this, go, step] { (this->*go)(step); });
    m_actions.append(action);
}

void RecordSteps::setEnabled(bool on)
{
    m_isEnabled = on;
    updateActions();
}

void RecordSteps::setCommentMap(std::shared_ptr<const CommentMap> map)
{
    m_comments = std::move(map);
    updateActions();
}

void RecordSteps::updateActions()
{
    for (int i = 0; i < m_actions.size(); ++i)
        m_actions[i]->setEnabled(m_isEnabled && (i >= 2 || m_comments));
}

void RecordSteps::goToComment(int step)
{
    const auto store = m_shown->datastore();
    if (!store || !m_comments)
        return;
    CommentKey from;
    from.begin = step > 0 ? earliestRecordTime : latestRecordTime;
    if (m_shown->record())
        from = CommentMap::keyOf(*m_shown->record());
    for (auto key = m_comments->neighbour(from, step); key; key = m_comments->neighbour(*key, step)) {
        const int index = store->indexOf(key->begin, key->end);
        // The shown record's times may have a comment under another offset too.
        if (index >= 0 && store->at(index) != m_shown->record())
            return m_shown->show(store->at(index));
    }
    Q_EMIT nothingFound(step > 0 ? tr("There is no later comment") : tr("There is no earlier comment"));
}

void RecordSteps::goToFlag(int step)
{
    const auto store = m_shown->datastore();
    if (!store)
        return;
    const auto &records = store->records();
    const int count = store->size();
    int index = step > 0 ? 0 : count - 1;
    if (m_shown->record())
        index = store->indexOfHead(*m_shown->record()) + step;
    for (; index >= 0 && index < count; index += step) {
        if (!records[std::size_t(index)]->flags.empty())
            return m_shown->show(records[std::size_t(index)]);
    }
    Q_EMIT nothingFound(step > 0 ? tr("There is no later flagged record") : tr("There is no earlier flagged record"));
}
