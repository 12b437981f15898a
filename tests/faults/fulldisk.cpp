// Lets the writers meet disks that are full: files that may not grow beyond a size drawn by chance (RLIMIT_FSIZE), and,
// where file systems may be mounted, one in memory that is as small.

#include "faults/lane.h"
#include "faults/writers.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <cstdio>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace {

using namespace Faults;

constexpr qint64 ofWriter = 60; // trials
constexpr qint64 ofMemory = 300;
constexpr int page = 4096;

qint64 sizeOf(const Contents &contents)
{
    qint64 size = 0;
    for (const auto &[name, bytes] : contents)
        size += (bytes.size() + page - 1) / page * page;
    return size;
}

/// The writer of a trial, or one without care.
Writer writerOf(Trial &trial, const Writer &writer)
{
    return trial.isPlanted ? carelessly(writer, trial.path("wanted")) : writer;
}

void judge(Trial &trial, const Writer &writer, const Ending &ending, const QString &folder, const QString &disk)
{
    const Contents found = contentsOf(folder);
    trial.count(QString("status %1").arg(ending.status));
    const QString fault = writer.faultOf(ending, found, false);
    if (!fault.isNull())
        trial.fail(QString("%1, %2: %3").arg(writer.name, disk, fault));
}

/// No file may become larger than that.
void writeUnderLimit(Trial &trial, const Writer &writer)
{
    qint64 largest = 0;
    for (const auto &[name, bytes] : writer.after)
        largest = std::max(largest, qint64(bytes.size()));
    const int limit = trial.pick(0, int(largest + largest / 20));
    const QString folder = trial.path("w");
    layDown(writer.before, folder);
    const Ending ending = writerOf(trial, writer).run(folder, {}, limit);
    judge(trial, writer, ending, folder, QString("no file above %1 bytes").arg(limit));
    if (!trial.failure().isEmpty() || ending.isSuccess())
        return;
    const QString again = writer.faultOfSecondRun(folder, false);
    if (!again.isNull())
        trial.fail(again);
}

bool mountMemory(const QString &folder, qint64 bytes, int files, unsigned long flags = 0)
{
    const QByteArray options =
        QString("size=%1,nr_inodes=%2").arg(QString::number(bytes), QString::number(files)).toLatin1();
    return ::mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", flags, options.constData()) == 0;
}

/// A file system with hardly more room than a run needs, in bytes or in the number of files.
void writeIntoMemory(Trial &trial)
{
    const Writer &writer = writers()[std::size_t(trial.pick(0, int(writers().size()) - 1))];
    const qint64 old = sizeOf(writer.before), grown = writer.manner == Writer::Appends ? old : 0;
    const int least = int(old) + page, most = int(old + sizeOf(writer.after) - grown) + page;
    const bool isFewFiles = !trial.isPlanted && trial.pick(0, 3) == 0;
    const int bytes = isFewFiles ? most : trial.pick(least, most);
    const int files = isFewFiles ? int(writer.before.size()) + trial.pick(2, 10) : 1000;
    const QString folder = trial.path("w"), keptFolder = trial.path("found");
    QDir().mkdir(folder);
    if (!mountMemory(folder, bytes, files))
        return trial.fail("can't mount");
    layDown(writer.before, folder);
    const Ending ending = writerOf(trial, writer).run(folder);
    judge(trial, writer, ending, folder,
          QString("a disk of %1 bytes and %2 files").arg(QString::number(bytes), QString::number(files)));
    const Contents found = contentsOf(folder);
    if (trial.failure().isEmpty() && !ending.isSuccess()) {
        if (!mountMemory(folder, 4 * most, 1000, MS_REMOUNT))
            trial.fail("can't make it larger");
        const QString again = writer.faultOfSecondRun(folder, false);
        if (!again.isNull())
            trial.fail(writer.name + ": " + again);
    }
    ::umount2(QFile::encodeName(folder).constData(), MNT_DETACH);
    layDown(found, keptFolder);
}

bool put(const char *path, const QByteArray &text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(text) == text.size();
}

/// Whether this process has mounts of its own, which go with it.
bool hasOwnMounts()
{
    const QByteArray user = QByteArray::number(::getuid()), group = QByteArray::number(::getgid());
    const bool isAlone =
        ::unshare(CLONE_NEWNS) == 0 ||
        (::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && put("/proc/self/setgroups", "deny") &&
         put("/proc/self/uid_map", "0 " + user + " 1") && put("/proc/self/gid_map", "0 " + group + " 1"));
    return isAlone && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 && [] {
        const QTemporaryDir folder;
        return mountMemory(folder.path(), page, 10) && ::umount(QFile::encodeName(folder.path()).constData()) == 0;
    }();
}

} // namespace

int main(int argc, char **argv)
{
    const bool mounts = hasOwnMounts(); // before there is a second thread
    workInMemory();
    const QCoreApplication application(argc, argv);
    std::vector<Kind> kinds;
    for (const Writer &writer : writers())
        kinds.push_back({writer.name, ofWriter, [&writer](Trial &trial) { writeUnderLimit(trial, writer); }, 30,
                         writingPrograms()});
    if (mounts)
        kinds.push_back({"memory", ofMemory, writeIntoMemory, 30, writingPrograms()});
    else
        std::puts("No file system may be mounted here, so that none that is full was tried");
    return runLane("fulldisk", kinds);
}
