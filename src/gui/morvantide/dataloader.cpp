#include "gui/morvantide/dataloader.h"

#include "gui/morvantide/readprogressdialog.h"
#include "util/workerthread.h"

#include <mutex>

namespace {

constexpr unsigned long patience = 5000; // ms

} // namespace

/// What the reading thread tells, with a mutex of its own. A posted call only says that something is in it, so that any
/// number of reports within one pass of the event loop are one.
struct DataLoader::Box {
    std::mutex mutex;
    DataLoader *loader = nullptr; ///< null once it is gone
    ReadProgress progress;
    Result result; ///< set when finished
    bool isFinished = false;
    bool isPosted = false;

    template<class Change>
    void put(Change change)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        change(*this);
        if (loader && !isPosted)
            isPosted = QMetaObject::invokeMethod(loader, "takeNews", Qt::QueuedConnection);
    }
};

DataLoader::DataLoader(QWidget *window) : m_window(window) {}

DataLoader::~DataLoader()
{
    for (QThread *thread : {m_retiringThread.data(), m_thread}) {
        if (!thread)
            continue;
        thread->disconnect();
        if (thread == m_thread) {
            const std::lock_guard<std::mutex> lock(m_box->mutex);
            m_box->loader = nullptr;
            m_task->setAborted();
            thread->quit();
        }
        if (!thread->wait(patience))
            continue; // deleting it now would end the program
        if (thread == m_thread) {
            const std::lock_guard<std::mutex> lock(m_box->mutex); // what the thread wrote is seen from here on
            delete m_task;
        }
        delete thread;
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
    m_box = std::make_shared<Box>();
    m_box->loader = this;
    m_box->progress.fileCount = settings.files.size();
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
    connect(m_task, &FileReaderTask::progress, m_task, [box = m_box](int count, const QString &message) {
        box->put([&](Box &b) {
            b.progress.filesDone = count;
            b.progress.message = QString(message.constData(), message.size()); // nothing is shared with that thread
        });
    });
    connect(m_task, &FileReaderTask::bytesProgress, m_task, [box = m_box](qint64 done, qint64 total) {
        box->put([&](Box &b) {
            b.progress.bytesDone = done;
            b.progress.bytesTotal = total;
        });
    });
    connect(m_task, &FileReaderTask::finished, m_task, [task = m_task, box = m_box] {
        box->put([task](Box &b) {
            b.result = {task->reader(), task->wasCancelled()};
            b.isFinished = true;
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
    if (!m_box)
        return;
    ReadProgress progress;
    Result result;
    bool isFinished = false;
    {
        const std::lock_guard<std::mutex> lock(m_box->mutex);
        m_box->isPosted = false;
        progress = m_box->progress;
        isFinished = m_box->isFinished;
        result = std::exchange(m_box->result, {});
    }
    m_dialog->setProgress(progress);
    if (!isFinished)
        return;
    m_task->deleteLater(); // and with it the thread goes away
    m_task = nullptr;
    m_retiringThread = std::exchange(m_thread, nullptr);
    m_box.reset();
    // Not merely hidden: after a short read the window system has yet to tell that the dialog is there, and would then
    // give it the focus, out of sight.
    m_dialog.reset();
    Q_EMIT finished(result);
}
