#pragma once

#include <QThread>

/// A thread with an event loop whose crashes can be reported, overflows of its stack included. Every thread of ours
/// with an event loop is a WorkerThread.
class WorkerThread : public QThread {
public:
    using QThread::QThread;

protected:
    void run() override;
};
