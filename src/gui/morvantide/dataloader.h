#pragma once

#include "datafiles/reading/filereadertask.h"
#include "gui/morvantide/readprogress.h"
#include "util/mailbox.h"

#include <QObject>
#include <QPointer>
#include <QThread>

#include <memory>

class ReadProgressDialog;

/// Owns the read of a data folder: its thread, its task, the progress dialog and the wish to cancel. One read at a
/// time. Main thread only.
class DataLoader : public QObject {
    Q_OBJECT
public:
    struct Result {
        std::shared_ptr<FileReader> reader; ///< with the store; nobody else holds it
        bool cancelled = false;             ///< and files were left unread
    };

    /// The dialog stands before that window, which is to outlive the loader.
    explicit DataLoader(QWidget *window);
    /// Ends a read that is under way, and waits for it at most 5 s; a thread that takes longer is left behind.
    ~DataLoader() override;

    bool isReading() const { return m_task != nullptr; }
    /// There must be no read under way.
    void start(const FileReaderSettings &settings);

public Q_SLOTS:
    /// The read ends behind the file at hand, and keeps the records read until then.
    void cancel();

Q_SIGNALS:
    void finished(const DataLoader::Result &result);

private Q_SLOTS:
    void takeNews();

private:
    /// The news of the reading thread.
    struct News {
        ReadProgress progress;
        Result result; ///< set when finished
        bool isFinished = false;
    };

    void connectTask();

    QWidget *m_window;
    std::unique_ptr<ReadProgressDialog> m_dialog; ///< of the read under way
    std::shared_ptr<Mailbox<News>> m_news;        ///< likewise
    FileReaderTask *m_task = nullptr;             ///< lives on the thread; null without a read
    QThread *m_thread = nullptr;                  ///< one for each read
    QPointer<QThread> m_retiringThread;           ///< of the read before, which goes away by itself
};
