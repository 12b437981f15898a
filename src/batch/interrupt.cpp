#include "batch/interrupt.h"

#include "datafiles/reading/filereadertask.h"

#include <atomic>
#include <csignal>

namespace Batch::Interrupt {

namespace {

std::atomic<bool> wish{false};
std::atomic<FileReaderTask *> reading{nullptr};
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<FileReaderTask *>::is_always_lock_free,
              "the handler may use nothing else");

extern "C" void handleInterrupt(int)
{
    wish = true;
    if (FileReaderTask *task = reading)
        task->setAborted();
}

} // namespace

void install()
{
    struct sigaction action {};
    action.sa_handler = handleInterrupt;
    action.sa_flags = int(SA_RESETHAND) | SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

bool requested()
{
    return wish;
}

ForwardTo::ForwardTo(FileReaderTask &task)
{
    reading = &task;
    if (wish)
        task.setAborted();
}

ForwardTo::~ForwardTo()
{
    reading = nullptr;
}

} // namespace Batch::Interrupt
