#include "gui/morvantide/dataloader.h"

#include "gui/morvantide/readprogressdialog.h"
#include "util/workerthread.h"

namespace {

constexpr unsigned long patience = 5000; // ms

} // namespace

DataLoader::DataLoader(QWidget *window) : m_window(window) {}

DataLoader::~DataLoader()
{
    // Deleting a thread that runs on would end the program.
    if (m_retiringThread) {
        m_retiringThread->disconnect();
        if (m_retiringThread->wait(patience))
            delete m_retiringThread;
    }
    if (!m_thread)
        return;
    m_thread->disconnect();
    m_news->detach();
    m_task->setAborted();
    m_thread->quit();
    if (m_thread->wait(patience)) {
        m_news->look([](const News &) {}); // what the thread wrote is seen from here on
        delete m_task;
        delete m_thread;
    }
}

void DataLoader::start(const FileReaderSettings &settings)
{
    Q_ASSERT(!isReading());
    m_dialog = std::make_unique<ReadProgressDialog>(settings.files.size(), m_window);
    connect(m_dialog.get(), &QProgressDialog::canceled, this, &DataLoader::cancel);
    m_dialog->show();

    auto reader = std::make_shared<FileReader>(FileReader::SpectrumMap(), settings.beginLimit, settings.endLimit);
    m_task = new FileReaderTask(std::move(reader), settings);
    m_news = std::make_shared<Mailbox<News>>(this, "takeNews");
    m_news->look([&settings](News &news) { news.progress.fileCount = settings.files.size(); });
    connectTask();
    m_thread = new WorkerThread;
    m_thread->setObjectName(QStringLiteral("reading"));
    m_task->moveToThread(m_thread);
    connect(m_task, &QObject::destroyed, m_thread, &QThread::quit, Qt::DirectConnection);
    connect(m_thread, &QThread::finished, m_thread, &QObject::deleteLater);
    m_thread->start(QThread::InheritPriority);
    QMetaObject::invokeMethod(m_task, "run", Qt::QueuedConnection);
}

void DataLoader::connectTask()
{
    // All of these run on the reading thread.
    connect(m_task, &FileReaderTask::progress, m_task, [box = m_news](int count, const QString &message) {
        box->put([&](News &news) {
            news.progress.filesDone = count;
            news.progress.message = QString(message.constData(), message.size()); // nothing is shared with that thread
        });
    });
    connect(m_task, &FileReaderTask::bytesProgress, m_task, [box = m_news](qint64 done, qint64 total) {
        box->put([&](News &news) {
            news.progress.bytesDone = done;
            news.progress.bytesTotal = total;
        });
    });
    connect(m_task, &FileReaderTask::finished, m_task, [task = m_task, box = m_news] {
        box->put([task](News &news) {
            news.result = {task->reader(), task->wasCancelled()};
            news.isFinished = true;
        });
    });
}

void DataLoader::cancel()
{
    if (!m_task)
        return;
    m_task->setAborted();
    m_dialog->showStopping();
}

void DataLoader::takeNews()
{
    if (!m_news)
        return;
    const News news = m_news->look([](News &held) {
        News told = held;
        held.result = {};
        return told;
    });
    m_dialog->setProgress(news.progress);
    if (!news.isFinished)
        return;
    m_task->deleteLater(); // and with it the thread goes away
    m_task = nullptr;
    m_retiringThread = std::exchange(m_thread, nullptr);
    m_news.reset();
    // Not merely hidden: after a short read the window system has yet to tell that the dialog is there, and would then
    // give it the focus, out of sight.
    m_dialog.reset();
    Q_EMIT finished(news.result);
}
