#include "demo/demowriter.h"

#include "spectra/inverterfiles.h"
#include "support/failingcalls.h"

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
        EXPECT_TRUE(errors.isEmpty()) << qPrintable(errors.join('\n'));
        ASSERT_EQ(loaded.size(), 4u) << name;
        for (std::size_t i = 0; i < loaded.size(); ++i)
            EXPECT_EQ(loaded[i]->info()->inverterData, campaign.inverterFiles()[i].text) << name;
    }
}

TEST_F(DemoInverters, SmoothPackHasInvertersOfAnotherNameThatSmooth)
{
    ASSERT_TRUE(Demo::writeSmoothPack(campaign.instrument(), path("smooth.sinp")));
    const SpectMath::InverterList smooth = SpectMath::loadInverters(path("smooth.sinp"), unitTable(), nullptr);
    ASSERT_EQ(smooth.size(), 4u);
    for (std::size_t i = 0; i < smooth.size(); ++i) {
        EXPECT_EQ(smooth[i]->info()->inverterName, "smooth");
        const SpectMath::Inverter &plain = *campaign.inverterFiles()[i].inverter;
        EXPECT_EQ(smooth[i]->info()->name, plain.info()->name);
        const auto &matrix = smooth[i]->settings().postTransform, &plainMatrix = plain.settings().postTransform;
        EXPECT_LT(norm_frobenius(matrix), 0.9 * norm_frobenius(plainMatrix));
        EXPECT_NEAR(norm_1(matrix), norm_1(plainMatrix), 0.3) << "nothing is lost";
    }
}

TEST_F(DemoInverters, OtherUnpackersTakeThePack)
{
    QProcess python; // checks names, sizes and checksums of all entries
    python.start("python3", {"-m", "zipfile", "-t", path("inverters/demo.sinp")});
    if (!python.waitForStarted())
        GTEST_SKIP() << "no Python";
    ASSERT_TRUE(python.waitForFinished());
    EXPECT_EQ(python.exitCode(), 0) << python.readAll().constData();
}

TEST_F(DemoInverters, AFileThatCanNotBeWrittenIsTold)
{
    const char *failed = "";
    int nth = 0;
    while (failed) {
        const FailingCalls calls(++nth);
        const bool written = Demo::writeInverterFiles(campaign.inverterFiles(), path("again"));
        failed = calls.failed();
        EXPECT_EQ(written, !failed) << failed << nth;
    }
    EXPECT_GT(nth, 6 * 6) << "files, and calls of each";
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
