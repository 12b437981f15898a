#pragma once

#include "spectra/inverter.h"

#include <QObject>
#include <QStringList>

#include <memory>

class QThread;

/// Owns the loading of inverters from files: its thread, the progress dialog and the wish to cancel. One loading at a
/// time. Main thread only.
class InverterLoader : public QObject {
    Q_OBJECT
public:
    struct Result {
        SpectMath::InverterList inverters;
        QStringList errors; ///< each for a file or an entry that gave no inverter
        bool cancelled = false;
    };

    /// A child of the window, before which the dialog stands.
    explicit InverterLoader(QWidget *window);
    /// Cancels a loading that is under way, and waits for the inverter at hand at most 5 s; a thread that takes longer
    /// is left behind.
    ~InverterLoader() override;

    bool isLoading() const { return m_box != nullptr; }
    /// There must be no loading under way. Small files are waited for, and finished() is emitted before this returns;
    /// for larger ones a dialog lets no other command come until they are read.
    void start(const QStringList &paths);

public Q_SLOTS:
    /// The loading ends behind the inverter at hand. Without one nothing happens.
    void cancel();

Q_SIGNALS:
    void finished(const InverterLoader::Result &result);

private Q_SLOTS:
    void takeNews();

private:
    struct Box;
    class Dialog;

    void startThread(const QStringList &paths);
    void showDialog();
    void end();

    QWidget *m_window;
    std::shared_ptr<Box> m_box;       ///< of the loading under way
    std::unique_ptr<Dialog> m_dialog; ///< likewise, if it takes long
    QThread *m_thread = nullptr;      ///< likewise
};
