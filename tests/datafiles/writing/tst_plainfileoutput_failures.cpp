#include "datafiles/writing/plainfileoutput.h"
#include "outputfixture.h"
#include "support/failingcalls.h"
#include "util/lockedfile.h"

#include <cerrno>

#include <sys/resource.h>
#include <unistd.h>

using Spectrometer::PlainFileOutput;
using Result = PlainFileOutput::RowResult;

TEST_F(OutputTest, FullDiskLosesTheRowAndNothingElse)
{
    PlainFileOutput output(settings);
    output.writeRecordRow(record());
    const QByteArray before = contentOf(path(recordsName));
    Spectrometer::FullRecord flagged = record(1);
    flagged.flags = {flagOf("leak")};
    // Room for nothing, for a part of the flag's definition, for all but the row's last byte.
    for (int room : {0, 5, 40, 100}) {
        FullDisk disk(before.size() + room);
        EXPECT_EQ(output.writeRecordRow(flagged), Result::Lost);
        EXPECT_EQ(contentOf(path(recordsName)), before) << room;
    }
    ASSERT_EQ(errors.size(), 4);
    // The reason is the system's, in the user's language.
    EXPECT_EQ(
        errors.first(),
        QString("Failed to write into file \"%1\": %2. Data was lost!").arg(path(recordsName), qt_error_string(EFBIG)));
    EXPECT_EQ(output.counts().lost, 4);

    // With room again the flag is still to be defined.
    EXPECT_EQ(output.writeRecordRow(flagged), Result::Written);
    const QByteArray after = contentOf(path(recordsName));
    EXPECT_TRUE(after.startsWith(before + "# flag "));
    EXPECT_EQ(headersIn(after), 1);
}

TEST_F(OutputTest, FullDiskAtTheHeaderLeavesNoFile)
{
    PlainFileOutput output(settings);
    for (const QByteArray &old : {QByteArray(), QByteArray("something of old\n")}) {
        if (!old.isEmpty())
            writeFile(path(recordsName), old);
        {
            FullDisk disk(100);
            EXPECT_EQ(output.writeRecordRow(record()), Result::Lost);
        }
        EXPECT_EQ(contentOf(path(recordsName)), old);
        EXPECT_EQ(QFile::exists(path(recordsName)), !old.isEmpty());
    }
    EXPECT_EQ(output.writeRecordRow(record()), Result::Written);
    EXPECT_EQ(headersIn(contentOf(path(recordsName))), 1);
}

TEST_F(OutputTest, AnyCallThatFailsCostsTheRowAndIsTold)
{
    enum { New, Continued, CutOff, CutOffAgain };
    QStringList ends;
    const QString torn = path(recordsName + ".torn");
    for (int file : {New, Continued, CutOff, CutOffAgain}) {
        for (int nth = 1; nth > 0; ++nth) {
            QFile::remove(path(recordsName));
            QFile::remove(torn);
            settings.syncFiles = file == New;
            errors.clear();
            if (file != New)
                PlainFileOutput(settings).writeRecordRow(record());
            const QByteArray before = contentOf(path(recordsName)), end = file >= CutOff ? "2019" : "";
            const QByteArray tornBefore = file == CutOffAgain ? "old" : "", tornAfter = tornBefore + "\n2019";
            if (file >= CutOff)
                writeFile(path(recordsName), before + end);
            if (file == CutOffAgain)
                writeFile(torn, tornBefore);
            PlainFileOutput output(settings);
            const char *failed = nullptr;
            {
                const FailingCalls calls(nth);
                output.writeRecordRow(record(1));
                output.closeFiles();
                failed = calls.failed();
            }
            SCOPED_TRACE(failed);
            const bool lost = output.counts().lost == 1;
            EXPECT_EQ(output.counts().written, lost ? 0 : 1);
            EXPECT_EQ(output.rowsOfClosedFiles().value(path(recordsName)), lost ? 0 : 1);
            EXPECT_EQ(errors.size(), lost ? 1 : 0);
            const QByteArray after = contentOf(path(recordsName));
            EXPECT_TRUE(after.startsWith(before));
            EXPECT_TRUE(!after.isEmpty() || !QFile::exists(path(recordsName)));
            EXPECT_EQ(headersIn(after), after.isEmpty() ? 0 : 1);
            const bool isMoved = !end.isEmpty() && after != before + end;
            EXPECT_EQ(contentOf(torn), !isMoved ? tornBefore : file == CutOff ? end : tornAfter);
            EXPECT_EQ(QFile::exists(torn), isMoved || file == CutOffAgain);
            if (failed)
                ends << QString(lost ? "%1 lost" : "%1").arg(failed);
            else
                nth = -1;
        }
    }
    ends.removeDuplicates();
    EXPECT_EQ(ends, (QStringList{"open lost", "lock lost", "read lost", "write lost", "fsync lost", "close lost",
                                 "pread lost", "ftruncate lost", "close"}));
}

TEST_F(OutputTest, RowsCountAsLostThatDoNotComeToTheDiskThoughTheyStoodInTheFileBefore)
{
    struct BrokenDisk : FileCalls {
        explicit BrokenDisk(int reason) : error(reason) { setCurrent(this); }
        ~BrokenDisk() override { setCurrent(nullptr); }
        int fsync(int) override
        {
            errno = error;
            return -1;
        }
        const int error;
    };
    PlainFileOutput(settings).writeRecordRow(record());
    settings.passOver = PlainFileOutput::PassOver::RowsOfAnyHeader;
    settings.syncFiles = true;
    for (int error : {EIO, EINVAL}) { // the second: a file system that has no such call
        const BrokenDisk disk(error);
        PlainFileOutput output(settings);
        EXPECT_EQ(output.writeRecordRow(record()), Result::Held);
        EXPECT_EQ(output.writeSpectraRow(withSpectrum()), Result::Written);
        output.closeFiles();
        const bool isLost = error == EIO;
        EXPECT_EQ(output.counts().lost, isLost ? 2 : 0);
        EXPECT_EQ(output.counts().held, isLost ? 0 : 1);
        EXPECT_EQ(errors.size(), isLost ? 2 : 0);
        EXPECT_EQ(errors.count(QString("Failed to bring file \"%1\" to the disk: %2. Data was lost!")
                                   .arg(path(recordsName), qt_error_string(EIO))),
                  errors.size() / 2);
        errors.clear();
        QFile::remove(path("20190912-block-ions.spectra"));
    }
}

TEST_F(OutputTest, LockedFileLosesTheRowAndNothingElse)
{
    settings.variants[0].currents = true;
    PlainFileOutput first(settings);
    first.writeRecordRow(record());
    const QByteArray before = contentOf(path(recordsName));
    PlainFileOutput second(settings);
    EXPECT_EQ(second.writeRecordRow(record()), Result::Lost);
    EXPECT_EQ(second.writeCurrentsRow(record()), Result::Written);
    EXPECT_EQ(contentOf(path(recordsName)), before);
    EXPECT_EQ(errors,
              QStringList{QString("Failed to lock file \"%1\" for writing. Data was lost!").arg(path(recordsName))});
    first.closeFiles();
    EXPECT_EQ(second.writeRecordRow(record()), Result::Written);
    EXPECT_EQ(headersIn(contentOf(path(recordsName))), 1);
}

TEST_F(OutputTest, FilesThatWaitForTheDiskTookTheDescriptorsOfLaterOnes)
{
    settings.syncFiles = true;
    settings.variants[0].spectra = false;
    rlimit usual{}, few{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &usual), 0);
    few = usual;
    few.rlim_cur = QDir("/proc/self/fd").entryList(QDir::Files | QDir::System).size() + 16;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    PlainFileOutput output(settings);
    for (int day = 0; day < 40; ++day)
        EXPECT_EQ(output.writeRecordRow(record(day * 24 * 60)), Result::Written) << day;
    output.closeFiles();
    setrlimit(RLIMIT_NOFILE, &usual);
    EXPECT_EQ(output.counts().written, 40);
}

TEST_F(OutputTest, PlacesThatCannotBeWritten)
{
    writeFile(folder.filePath("plain"), "x");
    settings.folder = folder.filePath("plain/sub");
    EXPECT_EQ(PlainFileOutput(settings).writeRecordRow(record()), Result::Lost);
    EXPECT_EQ(errors.takeLast(), QString("Failed to create path \"%1\". Data was lost!").arg(settings.folder));

    // A folder, and a device that would be read for ever, under the file's name.
    settings.folder = folder.filePath("odd");
    QDir().mkpath(path(recordsName));
    QFile::link("/dev/full", path("20190912-block-ions.spectra"));
    PlainFileOutput output(settings);
    EXPECT_EQ(output.writeRecordRow(record()), Result::Lost);
    EXPECT_EQ(output.writeSpectraRow(withSpectrum()), Result::Lost);
    for (const QString &name : {path("20190912-block-ions.spectra"), path(recordsName)})
        EXPECT_EQ(errors.takeLast(), QString("Failed to open file \"%1\". Data was lost!").arg(name));
    EXPECT_TRUE(errors.isEmpty());
}
