// Writes what the window does, into the folder that it is given: comments, layouts or settings; or, as a fault that is
// planted, the files of another folder without care. The exit status is 1 with words if something can't be written.

#include "datafiles/writing/commentwriting.h"
#include "windowsetup/settingsformat.h"
#include "windowsetup/setupfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace {

Spectrometer::RecordHead commentedRecord()
{
    Spectrometer::RecordHead head;
    head.beginTime = recordTimeFromTicks(ticksPerDay * 18151) + std::chrono::hours(10); // 2019-09-12
    head.endTime = head.beginTime + std::chrono::minutes(1);
    return head;
}

/// Null, or a reason.
QString writeComments(const QDir &folder)
{
    const QString changed = writeComment({folder.path(), "block", commentedRecord(), "ions"}, "newer");
    const QString first = writeComment({folder.path(), "2min", commentedRecord(), "ions"}, QString(5000, 'x'));
    return changed.isNull() ? first : changed;
}

QString removeComment(const QDir &folder)
{
    return writeComment({folder.path(), "block", commentedRecord(), "ions"}, {});
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

/// Gives files of `to` the bytes of those of `from` in the commonest careless way: each is emptied, and then written at
/// once; or, scattered, its second half first.
QString writeCarelessly(const QDir &from, const QDir &to, bool isScattered)
{
    QDirIterator each(from.path(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (each.hasNext()) {
        const QString source = each.next(), target = to.filePath(from.relativeFilePath(source));
        QFile file(source);
        if (each.fileInfo().isDir()) {
            to.mkpath(target);
            continue;
        }
        const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        const int out = ::open(qPrintable(target), O_WRONLY | O_CREAT | O_TRUNC, 0666);
        const auto put = [&](int at, int size) {
            return ::lseek(out, at, SEEK_SET) == at && ::write(out, bytes.constData() + at, std::size_t(size)) == size;
        };
        const int half = isScattered ? bytes.size() / 2 : 0;
        const bool isDone = put(half, bytes.size() - half) && (half == 0 || put(0, half));
        if (::close(out) != 0 || !isDone)
            return target;
    }
    return {};
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    std::signal(SIGXFSZ, SIG_IGN);
    const QStringList arguments = application.arguments();
    const QString what = arguments.value(1);
    const QDir folder(arguments.value(2));
    const QString reason = what == "comments"     ? writeComments(folder)
                           : what == "nocomments" ? removeComment(folder)
                           : what == "layouts"    ? writeLayouts(folder)
                           : what == "careless"   ? writeCarelessly(arguments.value(3), folder, false)
                           : what == "scattered"  ? writeCarelessly(arguments.value(3), folder, true)
                                                  : writeSettings(folder);
    if (!reason.isNull())
        std::fprintf(stderr, "Failed to write: %s\n", qPrintable(reason));
    return reason.isNull() ? 0 : 1;
}
