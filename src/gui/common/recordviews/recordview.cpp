#include "gui/common/recordviews/recordview.h"

namespace RecordViews {

RecordView::RecordView(std::shared_ptr<UiInfo> uiInfo, QWidget *parent, Qt::WindowFlags flags)
    : QDockWidget(parent, flags), m_uiInfo(std::move(uiInfo))
{
    connect(m_uiInfo.get(), &UiInfo::configUpdated, this, &RecordView::updateSetup);
}

RecordView::~RecordView() = default;

} // namespace RecordViews
