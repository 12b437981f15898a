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
        return writeRecords(output, store, [](int) { return true; });
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
        const bool complete = writeRecords(output, store, [&](int done) {
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
