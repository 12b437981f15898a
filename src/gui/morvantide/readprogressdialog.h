#pragma once

#include "gui/morvantide/readprogress.h"

#include <QProgressDialog>

/// Shows how far a read has come. A wish to cancel leaves it standing, since the read ends only behind the file at
/// hand; the owner of the read destroys it then.
class ReadProgressDialog : public QProgressDialog {
    Q_OBJECT
public:
    ReadProgressDialog(int fileCount, QWidget *parent);

    void setProgress(const ReadProgress &progress);
    /// Tells that the wish to cancel was heard.
    void showStopping();

public Q_SLOTS:
    /// Escape asks for the same as the button.
    void reject() override;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QLabel *m_label;
    QProgressBar *m_bar;
    QPushButton *m_cancelButton;
    bool m_stopping = false;
};
