#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>

class QThread;

/// Work on a thread of its own while a dialog lets no other command come: owns the thread, the dialog and the wish to
/// cancel. One work at a time. Main thread only.
class ModalWork : public QObject {
    Q_OBJECT
public:
    /// The work's side; any thread.
    class Monitor {
    public:
        /// Asked often, and ends the work soon.
        virtual bool isCancelled() const = 0;
        /// What it is at, a line of the dialog.
        virtual void tell(const QString &what) = 0;

    protected:
        ~Monitor() = default;
    };
    using Work = std::function<void(Monitor &monitor)>;
    using End = std::function<void(bool isCancelled)>;

    struct Words {
        QString thread; ///< its name, also in the report of a crash
        QString title;
        QString stopping; ///< what the dialog says once it is cancelled
    };

    /// The dialog stands before the widget's window, and the widget outlasts this.
    ModalWork(QWidget *widget, Words words);
    /// Cancels work that is under way, and waits for it at most 5 s; a thread that takes longer is left behind. Its end
    /// isn't told.
    ~ModalWork() override;

    bool isRunning() const { return m_box != nullptr; }
    /// There must be none under way. Short work is waited for, and `end` is called before this returns; for longer one
    /// the dialog comes. What the work knows of this thread's objects must be its own.
    void start(Work work, End end);

public Q_SLOTS:
    /// Without work nothing happens.
    void cancel();

private Q_SLOTS:
    void takeNews();

private:
    struct Box;
    class Dialog;

    void startThread(Work work);
    void finish();

    QWidget *m_widget;
    Words m_words;
    std::shared_ptr<Box> m_box; ///< of the work under way
    End m_end;                  ///< likewise
    QThread *m_thread = nullptr;
    QPointer<Dialog> m_dialog; ///< if it takes long; goes with its window
};
