#pragma once

#include <QDialog>

#include <cstdint>

class QLabel;
class QLineEdit;

namespace Tsb {

class TimeNavigator;

/// Asks for a moment and brings it to the middle of the time axis, which keeps its zoom. A text that can't be read is
/// told and leaves the dialog open.
class GoToTimeDialog : public QDialog {
    Q_OBJECT
public:
    /// The navigator must outlive the dialog; the moment in the middle of its window is offered. Times are read and
    /// shown as local times at that offset from UTC.
    GoToTimeDialog(TimeNavigator *navigator, std::int64_t offsetSeconds, QWidget *parent = nullptr);

public Q_SLOTS:
    void accept() override;

private:
    TimeNavigator *m_navigator;
    std::int64_t m_offset;
    QLineEdit *m_edit;
    QLabel *m_message;
};

} // namespace Tsb
