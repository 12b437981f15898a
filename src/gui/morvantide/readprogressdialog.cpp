#include "gui/morvantide/readprogressdialog.h"

#include "gui/common/recordnotes.h"

#include <QCloseEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace {

constexpr int labelWidth = 56; // average characters

} // namespace

ReadProgressDialog::ReadProgressDialog(int fileCount, QWidget *parent)
    : QProgressDialog(parent), m_label(new QLabel(this)), m_bar(new QProgressBar(this))
{
    setWindowTitle(tr("Reading data files"));
    setWindowModality(Qt::WindowModal);
    setAutoClose(true);
    setMinimumDuration(0);
    m_label->setTextFormat(Qt::PlainText);
    m_label->setAlignment(Qt::AlignCenter);
    m_label->setMinimumWidth(m_label->fontMetrics().averageCharWidth() * labelWidth);
    setLabel(m_label);
    setBar(m_bar);
    // The base's own button: with another one comes a second shortcut for Escape, and of two neither would be heard.
    setCancelButtonText(tr("Cancel"));
    m_cancelButton = findChild<QPushButton *>();
    // It may come up while the user types: Space and Return, meant for a line, are to cancel nothing.
    m_cancelButton->setAutoDefault(false);
    setFocusPolicy(Qt::StrongFocus);
    setFocus();
    // The base would hide itself on the wish to cancel. It connects by name, and only so can that be undone.
    disconnect(this, SIGNAL(canceled()), this, SLOT(cancel()));
    reset(); // the base meant to show itself soon
    // Not through the base's setValue, which runs the event loop by itself.
    m_bar->setRange(0, fileCount);
    m_bar->setValue(0);
    m_bar->setFormat(QStringLiteral("%v / %m")); // files; the label tells the per cent of the bytes
}

void ReadProgressDialog::setProgress(const ReadProgress &progress)
{
    m_bar->setValue(progress.filesDone);
    if (m_stopping)
        return;
    const QString text = progressText(progress);
    m_label->setText(m_label->fontMetrics().elidedText(text, Qt::ElideMiddle, m_label->width()));
    m_label->setToolTip(RecordNotes::toolTip(text));
}

void ReadProgressDialog::showStopping()
{
    m_stopping = true;
    m_cancelButton->setEnabled(false);
    m_label->setText(tr("Stopping after this file"));
}

void ReadProgressDialog::reject()
{
    Q_EMIT canceled();
}

void ReadProgressDialog::closeEvent(QCloseEvent *event)
{
    event->ignore();
    Q_EMIT canceled();
}
