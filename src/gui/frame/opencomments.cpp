#include "gui/frame/opencomments.h"

#include "gui/browser/plots/plot.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/commentview.h"
#include "gui/common/recordform.h"

OpenComments::OpenComments(RecordForm *form, CommentView *list, Tsb::TimeSeriesBrowser *browser, QObject *parent)
    : QObject(parent), m_form(form), m_list(list), m_browser(browser)
{
    connect(form, &RecordForm::editLeft, browser, [browser, form] {
        if (auto *const plot = browser->findChild<Tsb::Plot *>()) {
            plot->setFocus();
            plot->activateWindow(); // the form may float
        } else {
            form->clearEditFocus();
        }
    });
}

OpenComments::MapPointer OpenComments::read(const QString &folder, const Spectrometer::RecordMetadata &metadata,
                                            const Datastore &store)
{
    if (store.isEmpty() || metadata.dpVariants.isEmpty() || metadata.dpVariants.first().name.isEmpty())
        return nullptr;
    QHash<int, QString> opmodeNames;
    for (int mode = 0; mode < metadata.opmodes.size(); ++mode)
        opmodeNames.insert(mode, metadata.opmodes[mode].name);
    auto map = std::make_shared<CommentMap>();
    map->setFolder(folder);
    map->setVariants(metadata.dpVariants);
    map->setOpmodeNames(opmodeNames);
    map->loadComments(store.at(0)->beginTime, store.records().back()->beginTime);
    return map;
}

void OpenComments::setMap(MapPointer map)
{
    m_form->setCommentMap(map.get());
    if (m_map)
        m_map->saveUnsaved();
    m_list->setCommentMap(map.get());
    m_browser->setNotes(map.get());
    m_map = std::move(map);
}

void OpenComments::save()
{
    m_form->commitComment();
    if (m_map)
        m_map->saveUnsaved();
}

void OpenComments::removeOrphans(const StoreOf &storeOf)
{
    if (!m_map)
        return;
    QList<CommentKey> orphans;
    for (const CommentKey &key : m_map->keys()) {
        const auto store = storeOf(key.variant);
        if (!store || store->indexOf(key.begin, key.end) < 0)
            orphans.append(key);
    }
    m_map->forget(orphans);
}

std::shared_ptr<Record> OpenComments::recordOfRow(int row, const Datastore &store) const
{
    const auto key = m_map ? m_map->keyOfRow(row) : std::nullopt;
    const int index = key ? store.indexOf(key->begin, key->end) : -1;
    return index < 0 ? nullptr : store.at(index);
}
