#pragma once

#include <QThread>

/// A thread with an event loop whose crashes can be reported, overflows of its stack included. Every thread that has
/// one and that we start is one of these.
class WorkerThread : public QThread {
public:
    using QThread::QThread;

protected:
    void run() override;
};
