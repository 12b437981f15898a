#pragma once

class QMainWindow;
class QString;

/// A message in the window's status bar while the main thread is busy with work of many records, of which it can't show
/// more: it is painted at once, and goes with this. Work that is done within a moment tells nothing.
class BusyMessage {
public:
    BusyMessage(QMainWindow &window, const QString &text, int recordCount);
    BusyMessage(const BusyMessage &) = delete;
    BusyMessage &operator=(const BusyMessage &) = delete;
    ~BusyMessage();

private:
    QMainWindow *m_window; ///< null where nothing is told
};
