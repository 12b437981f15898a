#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

/// Brings the wishes to end that come from outside, SIGTERM, SIGINT and SIGHUP, into the event loop: one that comes
/// before the loop runs waits for it. A signal that was ignored when the process started, as under nohup, stays so. A
/// second SIGINT ends the process at once, for a program that hangs. One object at a time.
class QuitSignals : public QObject {
    Q_OBJECT
public:
    explicit QuitSignals(QObject *parent = nullptr);
    ~QuitSignals() override; ///< sets back the default actions

Q_SIGNALS:
    void quitRequested();

private:
    void take();

    std::unique_ptr<QSocketNotifier> m_notifier; ///< null when no socket could be had
};

/// Lets a write into a closed pipe or beyond a limit of size fail as a write, instead of ending the process.
void ignoreWriteSignals();
