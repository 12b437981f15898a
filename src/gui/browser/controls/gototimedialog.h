#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;

namespace Tsb {

class TimeView;

/// Asks for a moment and brings it to the middle of the time axis, which keeps its zoom. A text that can't be read is
/// told and leaves the dialog open.
class GoToTimeDialog : public QDialog {
    Q_OBJECT
public:
    /// The time view must outlive the dialog. The moment in its middle is offered.
    explicit GoToTimeDialog(TimeView *timeView, QWidget *parent = nullptr);

public Q_SLOTS:
    void accept() override;

private:
    TimeView *m_timeView;
    QLineEdit *m_edit;
    QLabel *m_message;
};

} // namespace Tsb
