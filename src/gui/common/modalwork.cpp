#include "gui/common/modalwork.h"

#include "gui/common/recordnotes.h"

#include "util/mailbox.h"
#include "util/workerthread.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <atomic>
#include <future>

namespace {

constexpr int labelWidth = 56; // average characters
/// No dialog comes and goes at once: the window waits as long for the thread.
constexpr std::chrono::milliseconds longestWithoutDialog(200);
constexpr unsigned long patience = 5000; // ms

} // namespace

/// What the thread tells, and what it is told.
struct ModalWork::Box final : Monitor {
    struct News {
        QString what;
        bool isFinished = false;
    };

    explicit Box(ModalWork *owner) : news(owner, "takeNews") {}

    bool isCancelled() const override { return cancelled; }
    void tell(const QString &what) override
    {
        news.put([&what](News &told) { told.what = QString(what.constData(), what.size()); }); // nothing is shared
    }
    /// On the thread, from begin to end.
    void run(const Work &work)
    {
        work(*this);
        news.put([](News &told) { told.isFinished = true; });
        end.set_value();
    }

    std::atomic<bool> cancelled{false};
    std::promise<void> end;
    Mailbox<News> news;
};

/// Stands before the window until it is destroyed, whatever is pressed.
class ModalWork::Dialog : public QDialog {
public:
    Dialog(ModalWork *work, QWidget *window)
        : QDialog(window), m_work(work), m_label(new QLabel(this)), m_buttons(new QDialogButtonBox(this))
    {
        setWindowTitle(work->m_words.title);
        setWindowModality(Qt::WindowModal);
        m_label->setTextFormat(Qt::PlainText);
        m_label->setAlignment(Qt::AlignCenter);
        m_label->setMinimumWidth(m_label->fontMetrics().averageCharWidth() * labelWidth);
        auto *bar = new QProgressBar(this);
        bar->setRange(0, 0); // how much there is isn't known
        m_buttons->setStandardButtons(QDialogButtonBox::Cancel);
        connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(m_label);
        layout->addWidget(bar);
        layout->addWidget(m_buttons);
    }

    void showLine(const QString &what)
    {
        m_label->setText(m_label->fontMetrics().elidedText(what, Qt::ElideMiddle, m_label->width()));
        m_label->setToolTip(RecordNotes::toolTip(what));
    }
    void showStopping()
    {
        m_buttons->setEnabled(false);
        m_label->setText(m_work->m_words.stopping);
    }
    /// What button, Escape and closing ask for.
    void reject() override { m_work->cancel(); }

private:
    ModalWork *m_work;
    QLabel *m_label;
    QDialogButtonBox *m_buttons;
};

ModalWork::ModalWork(QWidget *widget, Words words) : m_widget(widget), m_words(std::move(words)) {}

ModalWork::~ModalWork()
{
    delete m_dialog;
    if (!isRunning())
        return;
    m_box->news.detach();
    m_box->cancelled = true;
    m_thread->quit();
    if (m_thread->wait(patience))
        delete m_thread; // else that would end the program
}

void ModalWork::start(Work work, End end)
{
    Q_ASSERT(!isRunning());
    m_end = std::move(end);
    startThread(std::move(work));
    if (m_box->end.get_future().wait_for(longestWithoutDialog) == std::future_status::ready)
        return finish();
    m_dialog = new Dialog(this, m_widget->window());
    m_dialog->show();
    takeNews();
}

void ModalWork::startThread(Work work)
{
    m_box = std::make_shared<Box>(this);
    m_thread = new WorkerThread;
    m_thread->setObjectName(m_words.thread);
    auto *task = new QObject;
    task->moveToThread(m_thread);
    connect(m_thread, &QThread::finished, task, &QObject::deleteLater);
    QMetaObject::invokeMethod(
        task, [box = m_box, work = std::move(work)] { box->run(work); }, Qt::QueuedConnection);
    m_thread->start(QThread::InheritPriority);
}

void ModalWork::cancel()
{
    if (!isRunning())
        return;
    m_box->cancelled = true;
    if (m_dialog)
        m_dialog->showStopping();
}

void ModalWork::takeNews()
{
    if (!isRunning())
        return;
    const Box::News news = m_box->news.look([](const Box::News &told) { return told; });
    if (news.isFinished)
        finish();
    else if (m_dialog && !m_box->cancelled)
        m_dialog->showLine(news.what);
}

void ModalWork::finish()
{
    m_thread->quit();
    m_thread->wait(); // it has nothing left to do
    delete std::exchange(m_thread, nullptr);
    const bool isCancelled = m_box->cancelled;
    m_box.reset();
    delete m_dialog; // not merely hidden, or it might be given the focus when it is gone
    std::exchange(m_end, {})(isCancelled);
}
