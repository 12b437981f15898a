#include "gui/morvantide/inverterloader.h"

#include "gui/common/recordnotes.h"

#include "spectra/inverterfiles.h"
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
struct InverterLoader::Box {
    struct News {
        QString path;  ///< being read
        Result result; ///< set when finished
        bool isFinished = false;
    };

    explicit Box(InverterLoader *loader) : news(loader, "takeNews") {}

    std::atomic<bool> isCancelled{false};
    std::promise<void> end;
    Mailbox<News> news;

    /// On the thread, from begin to end.
    void load(const QStringList &paths)
    {
        Result loaded;
        loaded.inverters =
            SpectMath::loadChosenInverters(paths, unitTable(), &loaded.errors, [this](const QString &next) {
                news.put(
                    [&next](News &told) { told.path = QString(next.constData(), next.size()); }); // nothing is shared
                return !isCancelled;
            });
        news.put([&loaded](News &told) {
            told.result = std::move(loaded);
            told.isFinished = true;
        });
        end.set_value();
    }
};

/// Stands before the window until it is destroyed, whatever is pressed.
class InverterLoader::Dialog : public QDialog {
public:
    explicit Dialog(InverterLoader *loader)
        : QDialog(loader->m_window), m_loader(loader), m_label(new QLabel(this)), m_buttons(new QDialogButtonBox(this))
    {
        setWindowTitle(InverterLoader::tr("Reading inverters"));
        setWindowModality(Qt::WindowModal);
        m_label->setTextFormat(Qt::PlainText);
        m_label->setAlignment(Qt::AlignCenter);
        m_label->setMinimumWidth(m_label->fontMetrics().averageCharWidth() * labelWidth);
        auto *bar = new QProgressBar(this);
        bar->setRange(0, 0); // it isn't known how many there are
        m_buttons->setStandardButtons(QDialogButtonBox::Cancel);
        connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(m_label);
        layout->addWidget(bar);
        layout->addWidget(m_buttons);
    }

    void showPath(const QString &path)
    {
        if (m_loader->m_box->isCancelled)
            return;
        m_label->setText(m_label->fontMetrics().elidedText(path, Qt::ElideMiddle, m_label->width()));
        m_label->setToolTip(RecordNotes::toolTip(path));
    }
    void showStopping()
    {
        m_buttons->setEnabled(false);
        m_label->setText(InverterLoader::tr("Stopping after this inverter"));
    }
    /// What button, Escape and closing ask for.
    void reject() override { m_loader->cancel(); }

private:
    InverterLoader *m_loader;
    QLabel *m_label;
    QDialogButtonBox *m_buttons;
};

InverterLoader::InverterLoader(QWidget *window) : QObject(window), m_window(window) {}

InverterLoader::~InverterLoader()
{
    if (!isLoading())
        return;
    m_box->news.detach();
    m_box->isCancelled = true;
    m_thread->quit();
    if (m_thread->wait(patience))
        delete m_thread; // else that would end the program
}

void InverterLoader::start(const QStringList &paths)
{
    Q_ASSERT(!isLoading());
    startThread(paths);
    if (m_box->end.get_future().wait_for(longestWithoutDialog) == std::future_status::ready)
        end();
    else
        showDialog();
}

void InverterLoader::startThread(const QStringList &paths)
{
    m_box = std::make_shared<Box>(this);
    m_thread = new WorkerThread;
    m_thread->setObjectName(QStringLiteral("inverters"));
    auto *task = new QObject;
    task->moveToThread(m_thread);
    connect(m_thread, &QThread::finished, task, &QObject::deleteLater);
    QMetaObject::invokeMethod(
        task, [box = m_box, paths] { box->load(paths); }, Qt::QueuedConnection);
    m_thread->start(QThread::InheritPriority);
}

void InverterLoader::showDialog()
{
    m_dialog = std::make_unique<Dialog>(this);
    m_dialog->show();
    takeNews();
}

void InverterLoader::cancel()
{
    if (!isLoading())
        return;
    m_box->isCancelled = true;
    if (m_dialog)
        m_dialog->showStopping();
}

void InverterLoader::takeNews()
{
    if (!isLoading())
        return;
    const auto [path, isFinished] =
        m_box->news.look([](const Box::News &news) { return std::make_pair(news.path, news.isFinished); });
    if (isFinished)
        end();
    else
        m_dialog->showPath(path);
}

void InverterLoader::end()
{
    m_thread->quit();
    m_thread->wait(); // it has nothing left to do
    delete std::exchange(m_thread, nullptr);
    Result result = m_box->news.take().result;
    result.cancelled = m_box->isCancelled;
    m_box.reset();
    m_dialog.reset(); // not merely hidden, or it might be given the focus when it is gone
    Q_EMIT finished(result);
}
