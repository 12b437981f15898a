#pragma once

#include <QVariantMap>

/// Window setups as files.
namespace WindowSetup {

struct SetupFile {
    enum Condition { Sound, NotOpened, NotUnderstood };

    Condition condition = Sound;
    QVariantMap setup; ///< of a sound file
    QString complaint; ///< else: what is wrong, with the file's name
};

/// Reads a file, which may hold anything. Files of more than 16 MB, or of a million values, are no setups.
SetupFile readSetupFile(const QString &path);

/// The default layout, which is compiled in. It has no arrangement of docks: that is the window's own, which fits every
/// screen.
SetupFile readDefaultSetup();

/// Whether the setup is of a version that is no longer understood; one without a version is.
bool isTooOld(const QVariantMap &setup);

/// Replaces the file; what stood there stays if that fails. The result is null, or the reason of the failure.
QString writeSetupFile(const QString &path, const QVariantMap &setup);

/// Gives the file the name "NAME.bak", in the place of an earlier one. The result is null, or the reason of the
/// failure.
QString moveToBackup(const QString &path);

} // namespace WindowSetup
