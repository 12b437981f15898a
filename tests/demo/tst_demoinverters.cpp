#include "demo/demowriter.h"

#include "datafiles/filereader.h"
#include "spectra/inverterfiles.h"
#include "spectra/recordinversion.h"
#include "store/datastore.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>

using Demo::Campaign;

namespace {

class DemoInverters : public ::testing::Test {
protected:
    DemoInverters() : campaign(settings())
    {
        EXPECT_TRUE(Demo::writeInverterFiles(campaign.inverterFiles(), path("inverters")));
    }

    static Campaign::Settings settings()
    {
        Campaign::Settings settings;
        settings.interval = 600;
        return settings;
    }

    QString path(const char *name) const { return folder.filePath(QLatin1String(name)); }

    QTemporaryDir folder;
    const Campaign campaign;
};

} // namespace

TEST_F(DemoInverters, MapAndPackHoldTheFiles)
{
    for (const char *name : {"inverters/demo.invmap", "inverters/demo.sinp"}) {
        QStringList errors;
        const SpectMath::InverterList loaded = SpectMath::loadInverters(path(name), unitTable(), &errors);
        EXPECT_TRUE(errors.isEmpty()) << qPrintable(errors.join(QLatin1Char('\n')));
        ASSERT_EQ(loaded.size(), 4u) << name;
        for (std::size_t i = 0; i < loaded.size(); ++i)
            EXPECT_EQ(loaded[i]->info()->inverterData, campaign.inverterFiles()[i].text) << name;
    }
}

TEST_F(DemoInverters, OtherUnpackersTakeThePack)
{
    QProcess python; // checks names, sizes and checksums of all entries
    python.start(QStringLiteral("python3"),
                 {QStringLiteral("-m"), QStringLiteral("zipfile"), QStringLiteral("-t"), path("inverters/demo.sinp")});
    if (!python.waitForStarted())
        GTEST_SKIP() << "no Python";
    ASSERT_TRUE(python.waitForFinished());
    EXPECT_EQ(python.exitCode(), 0) << python.readAll().constData();
}

TEST_F(DemoInverters, HoldTheInstrumentsMatrix)
{
    for (const auto &file : campaign.inverterFiles()) {
        const RealMatrix expected =
            campaign.instrument().matrix(file.mode, file.polarity, Demo::classPoints(file.mode));
        const RealMatrix &found = file.inverter->settings().instrumentMatrix;
        ASSERT_EQ(found.size1(), expected.size1());
        ASSERT_EQ(found.size2(), expected.size2());
        double greatest = 0, difference = 0;
        for (std::size_t k = 0; k < expected.data().size(); ++k) {
            greatest = std::max(greatest, expected.data()[k]);
            difference = std::max(difference, std::fabs(expected.data()[k] - found.data()[k]));
        }
        EXPECT_LT(difference, 1e-8 * greatest);
    }
}

TEST_F(DemoInverters, ReinvertingTheDayFilesGivesTheirSpectra)
{
    Demo::writeCampaign(campaign, path("data"));
    FileReader reader(FileReader::SpectrumMap(), earliestRecordTime, latestRecordTime);
    const QDir data(path("data"));
    for (const QString &name : data.entryList(QDir::Files, QDir::Name))
        reader.readFile(data.filePath(name));
    reader.finishRecords();

    const SpectMath::InverterList inverters =
        SpectMath::loadInverters(path("inverters/demo.invmap"), unitTable(), nullptr);
    const auto fail = [](int, const QString &text) { ADD_FAILURE() << qPrintable(text); };
    const auto expectPrinted = [](double computed, double read) {
        if (std::isnan(computed))
            EXPECT_TRUE(std::isnan(read));
        else
            EXPECT_EQ(QString::number(computed, 'g', 6).toDouble(), read);
    };
    int failed = 0, compared = 0;
    for (const auto &record : reader.datastore()->records()) {
        const auto result = SpectMath::invertRecord(inverters, *record, *reader.metadata(), fail);
        ASSERT_EQ(result->spectra.size(), record->spectra.size());
        for (std::size_t s = 0; s < result->spectra.size(); ++s) {
            const SpectMath::Spectrum &computed = *result->spectra[s];
            const SpectMath::Spectrum &read = *record->spectra[s];
            EXPECT_EQ(read.info->hash, computed.info->hash);
            EXPECT_EQ(*read.info, *computed.info);
            failed += computed.status != 0;
            for (std::size_t k = 0; k < computed.concentrations.size(); ++k, ++compared)
                expectPrinted(computed.concentrations[k], read.concentrations[k]);
            expectPrinted(computed.currentRmsError, read.currentRmsError);
        }
    }
    EXPECT_GT(failed, 2);
    EXPECT_LT(failed, 20);
    EXPECT_GT(compared, 5000);
}
