#pragma once

#include "gui/common/uiinfo.h"
#include "records/record.h"

#include <QDockWidget>

#include <memory>

/// The docks that show the one selected record.
namespace RecordViews {

/// The base of those docks. A view doesn't choose a record by itself: the main window hands it one.
class RecordView : public QDockWidget {
    Q_OBJECT
public:
    explicit RecordView(std::shared_ptr<UiInfo> uiInfo, QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    ~RecordView() override;

public Q_SLOTS:
    /// Null when the data go away. An interim record never comes here.
    virtual void showRecord(std::shared_ptr<Record> record) = 0;
    /// Names or colours are others than before.
    virtual void updateSetup() = 0;

protected:
    const std::shared_ptr<UiInfo> &uiInfo() const { return m_uiInfo; }

private:
    std::shared_ptr<UiInfo> m_uiInfo;
};

} // namespace RecordViews
