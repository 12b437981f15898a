#pragma once

#include "gui/common/modalwork.h"
#include "spectra/inverter.h"

#include <QStringList>

/// Loads inverters from files, on another thread. One loading at a time. Main thread only.
class InverterLoader : public QObject {
    Q_OBJECT
public:
    struct Result {
        SpectMath::InverterList inverters;
        QStringList errors; ///< each for a file or an entry that gave no inverter
        bool cancelled = false;
    };

    /// A child of the window, before which the dialog stands. A loading that is under way at its end is cancelled.
    explicit InverterLoader(QWidget *window);

    bool isLoading() const { return m_work.isRunning(); }
    /// There must be no loading under way. Small files are waited for, and finished() is emitted before this returns;
    /// for larger ones a dialog lets no other command come until they are read.
    void start(const QStringList &paths);

public Q_SLOTS:
    /// The loading ends behind the inverter at hand. Without one nothing happens.
    void cancel() { m_work.cancel(); }

Q_SIGNALS:
    void finished(const InverterLoader::Result &result);

private:
    ModalWork m_work;
};
