#include "demo/demowriter.h"
#include "demo/legacyfiles.h"

#include "datafiles/reading/commentfile.h"
#include "datafiles/reading/datafinder.h"
#include "datafiles/reading/filereader.h"
#include "store/datastore.h"
#include "support/files.h"
#include "support/logcatcher.h"
#include "support/realvector.h"

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

/// The text that a file keeps of each number.
QStringList printed(const RealVector &values)
{
    QStringList texts;
    for (const double value : values)
        texts << QString::number(value, 'g', 6);
    return texts;
}

class DemoFilesTest : public ::testing::Test {
protected:
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
    LogCatcher log;
};

/// A failed spectrum is one of empty fields, which come back as not-a-number.
void expectPrinted(const SpectMath::Spectrum &found, const SpectMath::Spectrum &written)
{
    const auto numbers = [](const SpectMath::Spectrum &s) {
        return printed(realVector({s.currentRmsError, s.currentMeanAbsError, s.currentTotalError}));
    };
    const auto deviations = [](const SpectMath::Spectrum &s) {
        RealVector roots(s.concentrations.size());
        for (std::size_t i = 0; i < roots.size(); ++i)
            roots[i] = std::sqrt(s.covariances(i, i));
        return printed(roots);
    };
    EXPECT_EQ(*found.info, *written.info);
    EXPECT_EQ(numbers(found), numbers(written));
    EXPECT_EQ(printed(found.concentrations), printed(written.concentrations));
    EXPECT_EQ(deviations(found), deviations(written));
}

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
    EXPECT_EQ(log.upTo(Log::Notice), QStringList());
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
        using Spectrometer::FullRecord;
        for (RealVector FullRecord::*member :
             {&FullRecord::currents, &FullRecord::rawCurrents, &FullRecord::voltages, &FullRecord::variables})
            ASSERT_EQ(printed(found.*member), printed((*written).*member));
        for (std::size_t i = 0; i < found.currents.size(); ++i) {
            const double variance = std::isnan(written->currents[i]) ? noValue : written->currentVariances[i];
            ASSERT_EQ(printed(RealVector(1, found.currentVariances[i])), printed(RealVector(1, variance)))
                << "lost with its current";
        }
        ASSERT_EQ(found.spectra.size(), written->spectra.size());
        for (std::size_t s = 0; s < found.spectra.size(); ++s)
            expectPrinted(*found.spectra[s], *written->spectra[s]);
    }
    EXPECT_EQ(index, reader->datastore()->size());
}

TEST_F(DemoFilesTest, ThreeRecordsHaveComments)
{
    const Campaign campaign(settingsOf(3));
    Demo::writeCampaign(campaign, folder.path());
    const auto reader = read(folder.path());
    EXPECT_TRUE(Demo::writeComments(campaign, folder.path()));
    const auto files = findCommentFiles(folder.path(), QStringLiteral("block"), earliestRecordTime, latestRecordTime);
    ASSERT_EQ(files.size(), 1);
    QString all;
    readCommentFile(files.first(), [&](const CommentLine &line) {
        EXPECT_GE(reader->datastore()->indexOf(line.begin, line.end), 0) << qPrintable(line.text);
        all += line.text + '|';
    });
    EXPECT_EQ(all.count('|'), 3);
    for (const char *odd : {"\\", "\n", "\t", "\xc3\xb6"})
        EXPECT_TRUE(all.contains(QString::fromUtf8(odd))) << odd;
}

TEST_F(DemoFilesTest, OldStyleFilesHoldWhatTheOthersHold)
{
    const Campaign campaign(settingsOf(5, 2, 1800));
    ASSERT_TRUE(QDir().mkpath(path("new")) && QDir().mkpath(path("old")));
    Demo::writeCampaign(campaign, path("new"));
    ASSERT_TRUE(Demo::writeLegacyFiles(campaign, path("old")));
    EXPECT_EQ(findDataFiles({{"folderName", path("old")}, {"legacyFiles", true}}), filesIn(path("old")));
    EXPECT_EQ(filesIn(path("old")).size(), 8);
    const auto fresh = read(path("new")), old = read(path("old"));
    for (const Log::Entry &entry : log.entries())
        EXPECT_GT(entry.level, Log::Warning) << qPrintable(entry.message);
    ASSERT_EQ(old->datastore()->size(), fresh->datastore()->size());
    int spectra = 0;
    for (int i = 0; i < old->datastore()->size(); ++i) {
        const Record &a = *fresh->datastore()->at(i), &b = *old->datastore()->at(i);
        ASSERT_EQ(a.beginTime, b.beginTime);
        ASSERT_EQ(a.endUtcOffset, b.endUtcOffset);
        ASSERT_EQ(fresh->metadata()->opmodeName(a.opmode), old->metadata()->opmodeName(b.opmode));
        ASSERT_EQ(printed(a.currents), printed(b.currents));
        ASSERT_EQ(printed(a.rawCurrents), printed(b.rawCurrents));
        for (const auto &variable : fresh->metadata()->variables) {
            const auto other = old->metadata()->variable(variable->name);
            ASSERT_TRUE(other) << qPrintable(variable->name);
            ASSERT_EQ(printed(realVector({a.variables[std::size_t(variable->valueIndex)]})),
                      printed(realVector({b.variables[std::size_t(other->valueIndex)]})));
        }
        for (const auto &spectrum : b.spectra) {
            const auto same = std::find_if(a.spectra.begin(), a.spectra.end(),
                                           [&](const auto &each) { return each->info->name == spectrum->info->name; });
            ASSERT_NE(same, a.spectra.end());
            ASSERT_EQ(printed((*same)->concentrations), printed(spectrum->concentrations));
            ++spectra;
        }
    }
    EXPECT_GT(spectra, old->datastore()->size() / 2);
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
    EXPECT_EQ(filesIn(out).size(), 9);
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
