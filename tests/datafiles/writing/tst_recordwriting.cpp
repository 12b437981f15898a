#include "datafiles/writing/recordwriting.h"
#include "outputfixture.h"
#include "util/lockedfile.h"

namespace {

using namespace Spectrometer;

SpectMath::SpectrumInfoPointer infoNamed(const QString &name, const QString &hash)
{
    auto info = std::make_shared<SpectMath::SpectrumInfo>(*testInfo(name, {1, 2}));
    info->hash = hash;
    return info;
}

class RecordWriting : public OutputTest {
protected:
    std::shared_ptr<Record> add(int minutes, int mode, const SpectMath::SpectrumInfoPointer &info = nullptr)
    {
        auto made = std::make_shared<Record>(record(minutes));
        made->opmode = mode;
        if (info) {
            made->spectra = {testSpectrum(info, 1)};
            made->spectra[0]->covariances.resize(2, 2, 0, 0);
        }
        store.insertRecord(store.lowerBound(made->beginTime), made);
        return made;
    }
    bool writeAll(PlainFileOutput &output)
    {
        return writeRecords(output, store, 2, [](int) { return true; });
    }

    Datastore store;
};

} // namespace

TEST_F(RecordWriting, AModesSpectraAreItsOwnByNameAndThoseItsRecordsHold)
{
    const auto a = infoNamed("ions", "a"), b = infoNamed("offset", "b"), c = infoNamed("fog", "c"),
               d = infoNamed("ions", "d");
    add(0, 0, b);
    add(1, -1, c);
    add(2, 7, c);
    add(3, 1)->spectra = {nullptr};
    const SpectraByMode modes = spectraByMode(store, *metadata, {d, c, b, a});
    EXPECT_EQ(modes.keys(), (QStringList{"ions", "offset"}));
    EXPECT_EQ(modes["ions"], (QVector<SpectMath::SpectrumInfoPointer>{d, b, a})) << "in the order of the list";
    EXPECT_EQ(modes["offset"], QVector<SpectMath::SpectrumInfoPointer>{b});
}

TEST_F(RecordWriting, AsksBeforeEachRecordAndBehindTheLast)
{
    for (int i = 0; i < 3; ++i)
        add(i, 0, spectrumInfo);
    for (int stopAt : {0, 2, 3}) {
        QList<int> asked;
        PlainFileOutput output(settings);
        const bool complete = writeRecords(output, store, 1, [&](int done) {
            asked << done;
            return done < stopAt;
        });
        EXPECT_EQ(complete, stopAt == 3) << "stopped behind the last is not stopped";
        EXPECT_EQ(asked.size(), stopAt + 1);
        EXPECT_EQ(output.counts().written, 2 * stopAt) << "a spectra and a records row each";
    }
}

TEST_F(RecordWriting, OfEachFileTheFirstLossIsToldAndAllAreCounted)
{
    constexpr int day = 24 * 60;
    for (int i = 0; i < 5; ++i)
        for (int start : {0, day, 2 * day})
            add(start + i, 0, spectrumInfo);
    settings.variants[0].spectra = false;
    ASSERT_TRUE(QDir().mkpath(settings.folder));
    LockedFile first(settings.folder + "/20190912-block.records"), third(settings.folder + "/20190914-block.records");
    for (LockedFile *file : {&first, &third}) {
        ASSERT_TRUE(file->open(QIODevice::ReadWrite));
        ASSERT_TRUE(file->lock(LockedFile::WriteLock, false));
    }
    PlainFileOutput output(settings);
    EXPECT_TRUE(writeAll(output));
    EXPECT_EQ(output.counts().written, 5);
    EXPECT_EQ(output.counts().lost, 10);
    ASSERT_EQ(errors.size(), 2) << errors.join('\n').toStdString();
    EXPECT_TRUE(errors[0].contains("20190912") && errors[1].contains("20190914"));
}

TEST_F(RecordWriting, FilesAreTheSameForAnyNumberOfThreads)
{
    std::vector<std::shared_ptr<RecordFlag>> flags;
    for (int i = 0; i < 7; ++i)
        flags.push_back(flagOf(QString("{type: note, message: %1}").arg(i)));
    for (int i = 0; i < 1000; ++i) {
        const auto made = add(3 * i, i % 3 - 1, spectrumInfo); // two days; each third of an unknown mode
        made->currents = realVector({1.0 / (i + 1), -double(i)});
        made->flags = {flags[std::size_t(i * i % 7)], flags[std::size_t(i % 5)]};
    }
    settings.variants[0].currents = settings.variants[0].diagnostics = true;
    const QString folderOf = settings.folder;
    QMap<QString, QByteArray> expected;
    for (const int jobs : {1, 2, 8}) {
        settings.folder = folderOf + QString::number(jobs);
        PlainFileOutput output(settings);
        QList<int> asked;
        ASSERT_TRUE(writeRecords(output, store, jobs, [&](int done) {
            asked << done;
            return true;
        }));
        EXPECT_EQ(asked.size(), 1001);
        EXPECT_EQ(output.counts().written, 3 * 1000 + 333);
        EXPECT_TRUE(std::is_sorted(asked.begin(), asked.end()));
        QMap<QString, QByteArray> files;
        for (const QString &name : filesIn(settings.folder))
            files[name] = contentOf(path(name));
        EXPECT_GE(files.size(), 8);
        if (jobs == 1)
            expected = files;
        EXPECT_EQ(files, expected) << jobs;
    }
}

TEST_F(RecordWriting, StoppedAtAnyMomentItLeavesWholeRowsInOrder)
{
    constexpr int count = 334; // a thousand moments of all numbers of threads
    for (int i = 0; i < count; ++i)
        add(9 * i, i % 2, spectrumInfo);
    const QString folderOf = settings.folder;
    const auto filesOf = [&](int jobs, int stopAt) {
        settings.folder = folderOf + QString::number(jobs);
        QDir(settings.folder).removeRecursively();
        {
            PlainFileOutput output(settings);
            EXPECT_EQ(writeRecords(output, store, jobs, [=](int done) { return done < stopAt; }), stopAt > count);
            EXPECT_EQ(output.counts().written, std::min(stopAt, count) + (std::min(stopAt, count) + 1) / 2);
        }
        QMap<QString, QByteArray> files;
        for (const QString &name : filesIn(settings.folder))
            files[name] = contentOf(path(name));
        return files;
    };
    const auto whole = filesOf(1, count + 1);
    EXPECT_EQ(whole.size(), 6) << "records of three days, and spectra of one of the modes";
    for (const int jobs : {1, 2, 8})
        for (int stopAt = 0; stopAt < count; ++stopAt) {
            const auto files = filesOf(jobs, stopAt);
            int rowCount = 0;
            for (auto file = files.begin(); file != files.end(); ++file) {
                ASSERT_TRUE(whole[file.key()].startsWith(*file)) << qPrintable(file.key()) << jobs << ' ' << stopAt;
                rowCount += rows(path(file.key())).size();
            }
            ASSERT_EQ(rowCount, stopAt + (stopAt + 1) / 2) << jobs;
        }
}
