#include "util/workerthread.h"

#include "util/alternatestack.h"

void WorkerThread::run()
{
    const AlternateStack stack;
    exec();
}
