#include "app/quitsignals.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int quitSignals[] = {SIGTERM, SIGINT, SIGHUP};
int ends[2] = {-1, -1}; ///< the handler writes into the first, the notifier waits for the second

void handleQuitSignal(int)
{
    const int saved = errno;
    const char byte = 1;
    // With the pipe full there are wishes enough in it.
    [[maybe_unused]] const ssize_t written = write(ends[0], &byte, 1);
    errno = saved;
}

void installHandler(int signal)
{
    struct sigaction old {};
    if (sigaction(signal, nullptr, &old) == 0 && old.sa_handler == SIG_IGN)
        return;
    struct sigaction action {};
    action.sa_handler = handleQuitSignal;
    action.sa_flags = SA_RESTART | (signal == SIGINT ? int(SA_RESETHAND) : 0);
    sigaction(signal, &action, nullptr);
}

void removeHandler(int signal)
{
    struct sigaction old {};
    if (sigaction(signal, nullptr, &old) != 0 || old.sa_handler != handleQuitSignal)
        return;
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigaction(signal, &action, nullptr);
}

} // namespace

QuitSignals::QuitSignals(QObject *parent) : QObject(parent)
{
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(ends[1], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &QuitSignals::take);
    for (int signal : quitSignals)
        installHandler(signal);
}

QuitSignals::~QuitSignals()
{
    if (!m_notifier)
        return;
    for (int signal : quitSignals)
        removeHandler(signal);
    m_notifier.reset();
    for (int &end : ends) {
        close(end);
        end = -1;
    }
}

void QuitSignals::take()
{
    char bytes[64];
    while (read(ends[1], bytes, sizeof bytes) > 0) {
    }
    Q_EMIT quitRequested();
}

void ignoreWriteSignals()
{
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}
