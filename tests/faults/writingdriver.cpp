// Writes what the window does, into the folder that it is given: comments, layouts or settings. The exit status is 1
// with words if one of them can't be written.

#include "datafiles/writing/commentwriting.h"
#include "windowsetup/settingsformat.h"
#include "windowsetup/setupfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include <csignal>
#include <cstdio>

namespace {

/// Null, or a reason.
QString writeComments(const QDir &folder)
{
    Spectrometer::RecordHead head;
    head.beginTime = recordTimeFromTicks(ticksPerDay * 18151) + std::chrono::hours(10); // 2019-09-12
    head.endTime = head.beginTime + std::chrono::minutes(1);
    const QString changed = writeComment({folder.path(), "block", head, "ions"}, "newer");
    const QString first = writeComment({folder.path(), "2min", head, "ions"}, QString(5000, 'x'));
    return changed.isNull() ? first : changed;
}

QString writeLayouts(const QDir &folder)
{
    QVariantMap layout = WindowSetup::readDefaultSetup().setup;
    layout.insert("version", 2);
    const QString replaced = WindowSetup::writeSetupFile(folder.filePath("a.windowsetup"), layout);
    // One that isn't understood is kept.
    const QString other = folder.filePath("b.windowsetup");
    const WindowSetup::SetupFile old = WindowSetup::readSetupFile(other);
    const bool isSound = old.condition == WindowSetup::SetupFile::Sound && !WindowSetup::isTooOld(old.setup);
    const QString kept = QFileInfo::exists(other) && !isSound ? WindowSetup::moveToBackup(other) : QString();
    const QString written = kept.isNull() ? WindowSetup::writeSetupFile(other, layout) : kept;
    return replaced.isNull() ? written : replaced;
}

QString writeSettings(const QDir &folder)
{
    WindowSetup::removeNamelessLock(folder.filePath("settings.ini"));
    QSettings settings(folder.filePath("settings.ini"), WindowSetup::settingsFormat());
    settings.setValue("version", 3);
    settings.setValue("MainWindow/geometry", QByteArray(500, 'x'));
    settings.sync();
    return settings.status() == QSettings::NoError ? QString() : QStringLiteral("no access");
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    std::signal(SIGXFSZ, SIG_IGN);
    const QStringList arguments = application.arguments();
    const QString what = arguments.value(1);
    const QDir folder(arguments.value(2));
    const QString reason = what == "comments"  ? writeComments(folder)
                           : what == "layouts" ? writeLayouts(folder)
                                               : writeSettings(folder);
    if (!reason.isNull())
        std::fprintf(stderr, "Failed to write: %s\n", qPrintable(reason));
    return reason.isNull() ? 0 : 1;
}
