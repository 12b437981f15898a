#pragma once

#include "faults/loadedwindow.h"

#include <QPointer>

#include <functional>

class DataSaverDialog;
class PictureCommands;

namespace Faults {

/// Starts what takes long in the program's window, and cancels it as a user does. Main thread only.
class LongWork {
public:
    enum Kind { read, readAgain, loading, reinversion, save, exporting, picture };
    static constexpr int kinds = picture + 1;
    static QString nameOf(Kind kind);

    /// The data folder, beside which "inverters" lies. Tables, pictures and files come into "made" below the window's
    /// folder.
    LongWork(LoadedWindow &window, const QString &data);

    /// The ms that it takes undisturbed. What is too short to be met in the middle is done more often from then on.
    double measure(Kind kind);
    /// Comes back before the end or behind it.
    void start(Kind kind);
    void cancel(Kind kind);
    bool isBusy(Kind kind) const;
    /// What there is after that work, cancelled or not: fails where something passes for complete and isn't.
    void judge(Kind kind, bool wasCancelled) const;
    /// The same of files alone, which may be asked by another process.
    static QString complaintOfFiles(const QString &folder);
    /// Brings the window back to where the work can be started anew.
    void clear(Kind kind);

private:
    QString target(const QString &name, const QString &suffix = {}) const;
    QWidget *pictureDialog() const;

    LoadedWindow &m_window;
    const QString m_data;
    int m_recordCount = 0; ///< of the whole data, once they were read
    int m_round = 0;
    int m_doublings = 4; ///< of the list of inverters
    QPointer<DataSaverDialog> m_saver;
    PictureCommands *m_pictures; ///< the window's
};

} // namespace Faults
