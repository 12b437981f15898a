#include "demo/demowriter.h"

#include "datafiles/reading/filereader.h"
#include "log/logger.h"
#include "store/datastore.h"
#include "support/files.h"

#include <QProcess>
#include <QTemporaryDir>

#include <cmath>

using Demo::Campaign;

namespace {

Campaign::Settings settingsOf(std::uint64_t seed, int days = 1, int interval = 900)
{
    Campaign::Settings settings;
    settings.days = days;
    settings.interval = interval;
    settings.seed = seed;
    return settings;
}

QByteArray allBytes(const QString &folder)
{
    QByteArray all;
    for (const QString &name : filesIn(folder))
        all += name.toUtf8() + '\n' + contentOf(folder + '/' + name);
    return all;
}

/// The value that a file keeps of a number.
double asPrinted(double value)
{
    return QString::number(value, 'g', 6).toDouble();
}

testing::AssertionResult same(double read, double printed)
{
    if (read == printed || (std::isnan(read) && std::isnan(printed)))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << read << " was read, " << printed << " was written";
}

class DemoFilesTest : public ::testing::Test {
protected:
    DemoFilesTest()
    {
        Log::RootLogger::instance().setFilter([](const Log::Entry &entry) { return entry.level <= Log::Notice; });
        QObject::connect(&Log::RootLogger::instance(), &Log::RootLogger::newEntry, &logReceiver,
                         [this](const Log::Entry &entry) { complaints << entry.message; });
    }

    QString path(const QString &name) const { return folder.filePath(name); }
    std::unique_ptr<FileReader> read(const QString &from) const
    {
        auto reader = std::make_unique<FileReader>(FileReader::SpectrumMap(), earliestRecordTime, latestRecordTime);
        for (const QString &name : filesIn(from))
            reader->readFile(from + '/' + name);
        reader->finishRecords();
        return reader;
    }

    QTemporaryDir folder;
    QObject logReceiver;
    QStringList complaints;
};

} // namespace

TEST_F(DemoFilesTest, SameSeedSameBytes)
{
    const auto write = [&](const char *name, std::uint64_t seed) {
        EXPECT_EQ(Demo::writeCampaign(Campaign(settingsOf(seed)), path(QLatin1String(name))).lost, 0);
        return allBytes(path(QLatin1String(name)));
    };
    const QByteArray one = write("one", 1);
    EXPECT_EQ(one, write("again", 1));
    EXPECT_NE(one, write("other", 2));
    EXPECT_EQ(filesIn(path("one")), (QStringList{"20190514-block-ions.spectra", "20190514-block-particles.spectra",
                                                 "20190514-block.records"}));
}

TEST_F(DemoFilesTest, WhatIsReadIsWhatWasWritten)
{
    const Campaign campaign(settingsOf(3, 2, 300));
    Demo::writeCampaign(campaign, folder.path());
    const auto reader = read(folder.path());
    EXPECT_TRUE(complaints.isEmpty()) << qPrintable(complaints.join('\n'));
    EXPECT_EQ(reader->statistics().ignoredRows, 0);

    const Spectrometer::RecordMetadata &metadata = *reader->metadata();
    EXPECT_EQ(metadata.electrometerGroups, campaign.metadata()->electrometerGroups);
    EXPECT_EQ(metadata.electrometerNames, campaign.metadata()->electrometerNames);
    EXPECT_EQ(metadata.instrumentSettings, campaign.metadata()->instrumentSettings);
    ASSERT_EQ(metadata.variableCount, campaign.metadata()->variableCount);
    for (int i = 0; i < metadata.variables.size(); ++i) {
        EXPECT_EQ(metadata.variables.at(i)->name, campaign.metadata()->variables.at(i)->name);
        EXPECT_EQ(metadata.variables.at(i)->unit, campaign.metadata()->variables.at(i)->unit);
    }

    int index = 0;
    for (int slot = 0; slot < campaign.slotCount(); ++slot) {
        const auto written = campaign.record(slot);
        if (!written)
            continue;
        ASSERT_LT(index, reader->datastore()->size());
        const Record &found = *reader->datastore()->at(index++);
        ASSERT_EQ(found.beginTime, written->beginTime);
        ASSERT_EQ(found.endTime, written->endTime);
        ASSERT_EQ(found.beginUtcOffset, written->beginUtcOffset);
        ASSERT_EQ(metadata.opmodeName(found.opmode), campaign.metadata()->opmodeName(written->opmode));
        ASSERT_EQ(found.flags.size(), written->flags.size());
        for (std::size_t i = 0; i < found.flags.size(); ++i) {
            EXPECT_EQ(found.flags[i]->text, written->flags[i]->text);
            EXPECT_EQ(found.flags[i]->message, written->flags[i]->message);
            EXPECT_EQ(found.flags[i]->type, written->flags[i]->type);
        }
        for (RealVector Spectrometer::FullRecord::*member :
             {&Spectrometer::FullRecord::currents, &Spectrometer::FullRecord::currentVariances,
              &Spectrometer::FullRecord::rawCurrents, &Spectrometer::FullRecord::voltages,
              &Spectrometer::FullRecord::variables}) {
            ASSERT_EQ((found.*member).size(), ((*written).*member).size());
            for (std::size_t i = 0; i < (found.*member).size(); ++i) {
                const bool lostWithCurrent =
                    member == &Spectrometer::FullRecord::currentVariances && std::isnan(written->currents[i]);
                ASSERT_TRUE(same((found.*member)[i], lostWithCurrent ? noValue : asPrinted(((*written).*member)[i])));
            }
        }

        // A failed spectrum is one of empty fields, which come back as not-a-number.
        ASSERT_EQ(found.spectra.size(), written->spectra.size());
        for (std::size_t s = 0; s < found.spectra.size(); ++s) {
            const auto &original = *written->spectra[s];
            const auto &copy = *found.spectra[s];
            ASSERT_EQ(*copy.info, *original.info);
            ASSERT_TRUE(same(copy.currentRmsError, asPrinted(original.currentRmsError)));
            ASSERT_TRUE(same(copy.currentMeanAbsError, asPrinted(original.currentMeanAbsError)));
            ASSERT_TRUE(same(copy.currentTotalError, asPrinted(original.currentTotalError)));
            const BandMatrix &originalCovariances = original.covariances;
            const BandMatrix &covariances = copy.covariances;
            for (std::size_t j = 0; j < original.concentrations.size(); ++j) {
                ASSERT_TRUE(same(copy.concentrations[j], asPrinted(original.concentrations[j])));
                const double deviation = asPrinted(std::sqrt(originalCovariances(j, j)));
                ASSERT_TRUE(same(covariances(j, j), deviation * deviation));
            }
        }
    }
    EXPECT_EQ(index, reader->datastore()->size());
}

TEST_F(DemoFilesTest, SavedAgainByteByByte)
{
    const Campaign campaign(settingsOf(5));
    const QString first = path("first");
    Demo::writeCampaign(campaign, first);
    const auto saveAgain = [&](const QString &from, const QString &to) {
        const auto reader = read(from);
        auto settings = Demo::outputSettings(campaign, to);
        settings.metadata = reader->metadata();
        settings.spectra.clear();
        for (const auto &info : reader->spectrumInfos())
            settings.spectra[info->opmode] << info;
        Spectrometer::PlainFileOutput output(settings);
        for (const auto &record : reader->datastore()->records()) {
            output.writeRecordRow(*record);
            output.writeSpectraRow(*record);
        }
        EXPECT_EQ(output.counts().lost, 0);
    };
    const QString second = path("second");
    const QString third = path("third");
    saveAgain(first, second);
    saveAgain(second, third);
    EXPECT_EQ(allBytes(second), allBytes(third));
    ASSERT_EQ(filesIn(first), filesIn(second));
    for (const QString &name : filesIn(first)) {
        QByteArray expected = contentOf(first + '/' + name);
        // The one thing that files can't keep: that the empty fields of a spectrum mean a failure.
        if (name.endsWith(".spectra")) {
            expected.replace("\t\t", "\tnan\t").replace("\t\t", "\tnan\t").replace("\t\n", "\tnan\n");
        }
        EXPECT_TRUE(expected == contentOf(second + '/' + name)) << qPrintable(name);
    }
}

TEST_F(DemoFilesTest, Program)
{
    QByteArray errors;
    const auto run = [&errors](const QStringList &arguments) {
        QProcess process;
        process.start(QStringLiteral(MORVANTIDE_DEMO), arguments);
        EXPECT_TRUE(process.waitForFinished(60000));
        errors = process.readAllStandardError();
        return process.exitCode();
    };
    const QString out = path("new/folder");
    EXPECT_EQ(run({out, "--days", "2", "--interval", "3600", "--seed", "9"}), 0);
    EXPECT_EQ(filesIn(out).size(), 6);
    const QByteArray before = allBytes(out);
    EXPECT_EQ(run({out}), 2); // never adds to a folder that holds something
    EXPECT_EQ(allBytes(out), before);
    EXPECT_EQ(run({}), 2);
    EXPECT_EQ(run({path("none"), "--days", "0"}), 2);
    EXPECT_FALSE(QDir(path("none")).exists());
    // What can't become a folder is told once, not for every row.
    writeFile(path("file"));
    EXPECT_EQ(run({path("file")}), 2);
    EXPECT_EQ(errors.count('\n'), 1) << errors.constData();
    EXPECT_EQ(run({path("file/inside")}), 1);
    EXPECT_EQ(errors.count('\n'), 1) << errors.constData();
}
