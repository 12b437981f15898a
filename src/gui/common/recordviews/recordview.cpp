#include "gui/common/recordviews/recordview.h"

#include "gui/common/seencontents.h"

namespace RecordViews {

RecordView::RecordView(std::shared_ptr<UiInfo> uiInfo, QWidget *parent, Qt::WindowFlags flags)
    : QDockWidget(parent, flags), m_uiInfo(std::move(uiInfo)), m_contents(new SeenContents(this, [this] { refresh(); }))
{
    connect(m_uiInfo.get(), &UiInfo::configUpdated, this, &RecordView::updateSetup);
}

RecordView::~RecordView() = default;

void RecordView::showRecord(std::shared_ptr<Record> record)
{
    m_record = std::move(record);
    if (m_record)
        m_contents->setStale();
    else
        m_contents->refreshNow();
}

void RecordView::updateSetup()
{
    m_isSetupStale = true;
    m_contents->setStale();
}

void RecordView::setRecordStale()
{
    m_contents->setStale();
}

void RecordView::refresh()
{
    if (std::exchange(m_isSetupStale, false))
        refreshSetup();
    refreshRecord();
}

} // namespace RecordViews
