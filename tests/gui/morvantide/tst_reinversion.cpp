#include "gui/morvantide/reinversion.h"

#include "demo/zipwriter.h"
#include "gui/morvantide/reviewwindow.h"
#include "spectra/inverterfiles.h"
#include "spectra/recordinversion.h"
#include "support/plotstore.h"

#include <QElapsedTimer>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QSignalSpy>

#include <cstring>

using SpectMath::InverterList;

namespace {

const QString map = "inverters/demo.invmap";

bool sameBits(const SpectMath::Spectrum &a, const SpectMath::Spectrum &b)
{
    const auto same = [](const auto &x, const auto &y) {
        return x.size() == y.size() && (x.empty() || std::memcmp(&x[0], &y[0], x.size() * sizeof(double)) == 0);
    };
    return a.status == b.status && same(a.concentrations, b.concentrations) &&
           same(a.covariances.data(), b.covariances.data()) &&
           std::memcmp(&a.currentRmsError, &b.currentRmsError, sizeof(double)) == 0;
}

class ReinversionTest : public ReviewWindow {
protected:
    bool canReinvert() const { return action("Reinvert...")->isEnabled(); }
    bool canCancel() const { return action("Cancel reinversion")->isEnabled(); }
    QStringList spectrumNames() const
    {
        QStringList names;
        for (const auto &info : window->uiInfo()->spectrumInfos())
            names << window->uiInfo()->spectrumName(info.get());
        return names;
    }
    InverterList loaded(const QString &name) const
    {
        return SpectMath::loadInverters(path(name), unitTable(), nullptr);
    }
    /// Records that hold a spectrum of this inverter name.
    int recordsWith(const QString &inverterName) const
    {
        int count = 0;
        for (const auto &record : window->datastore()->records())
            count += std::any_of(record->spectra.begin(), record->spectra.end(),
                                 [&](const auto &spectrum) { return spectrum->info->inverterName == inverterName; });
        return count;
    }
    /// Whether each record's spectra, and nothing else, are what inverting it by itself gives.
    void expectSpectraOf(const InverterList &inverters) const
    {
        int spectra = 0;
        for (const auto &record : window->datastore()->records()) {
            const auto expected =
                SpectMath::invertRecord(inverters, *record, *window->uiInfo()->metadata(),
                                        [](int, const QString &text) { ADD_FAILURE() << text.toStdString(); });
            ASSERT_EQ(record->spectra.size(), expected->spectra.size());
            for (std::size_t i = 0; i < expected->spectra.size(); ++i, ++spectra) {
                ASSERT_EQ(record->spectra[i]->info->hash, expected->spectra[i]->info->hash);
                ASSERT_TRUE(sameBits(*record->spectra[i], *expected->spectra[i])) << spectra;
            }
        }
        std::size_t entries = 0;
        for (const auto &series : window->datastore()->spectrumSeries())
            entries += series->size();
        EXPECT_EQ(entries, std::size_t(spectra));
        EXPECT_GT(spectra, 0);
    }
    /// Entries that are no inverters, which takes a tenth of a second or more to find for each.
    static QByteArray slowPack(int entries)
    {
        Demo::ZipWriter zip;
        Demo::ZipWriter::Entry entry;
        entry.data = "[" + QByteArray("a,").repeated(400'000) + "a]";
        entry.deflated = false;
        for (int i = 0; i < entries; ++i) {
            entry.name = QByteArray::number(i) + ".inverter";
            zip.add(entry);
        }
        return zip.finish();
    }
    /// One that takes a second or so.
    void startLongReinversion()
    {
        window->findChild<Reinversion *>()->setWorkerCount(1);
        startReinversion(writeVariants(60));
        ASSERT_TRUE(window->isReinverting());
    }
};

} // namespace

TEST_F(ReinversionTest, RecordsThatAFollowedFolderBringsAreInvertedByTheInvertersInUse)
{
    const QString records = "demo/20190514-block.records";
    const QByteArray all = contentOf(records);
    const int cut = all.lastIndexOf('\n', all.size() - 20000);
    write(records, all.left(cut + 1));
    for (const char *mode : {"ions", "particles"})
        ASSERT_TRUE(QFile::remove(path(QString("demo/20190514-block-%1.spectra").arg(mode))));
    open();
    reinvert({map});
    const int before = window->datastore()->size();
    action("Follow folder")->trigger();
    QFile file(path(records));
    ASSERT_TRUE(file.open(QIODevice::Append) && file.write(all.mid(cut + 1)) == all.size() - cut - 1 && file.flush());
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->datastore()->size() > before; }, 20000));
    withDialog<DataSaverDialog>([](DataSaverDialog &dialog) { // a save that begins before that says so while it holds
        const auto *problems = dialog.findChild<QLabel *>("problemLabel");
        const auto isBehind = [problems] { return problems->text().contains("reinversion is running"); };
        EXPECT_TRUE(isBehind());
        EXPECT_TRUE(QTest::qWaitFor([&isBehind] { return !isBehind(); }, 20000));
        dialog.reject();
    });
    window->saveData();
    QTest::qWait(2000);
    expectSpectraOf(window->inverters());
    const auto &store = *window->datastore();
    for (int i = 0; i < 3; ++i) // rows of other files that belong to the record
        Q_EMIT window->datastore()->updated(before, store.at(before), DataReplaced);
    QTest::qWait(2000);
    expectSpectraOf(window->inverters());
}

TEST_F(ReinversionTest, EveryRecordGetsTheSameSpectraWhateverTheWorkers)
{
    EXPECT_FALSE(canReinvert() || canCancel());
    window->reinvert();
    EXPECT_TRUE(log().contains("No data to invert!"));
    open();
    EXPECT_TRUE(canReinvert());
    EXPECT_FALSE(canCancel());

    QVector<std::size_t> changes;
    const QObject listener;
    QObject::connect(window.get(), &MorvantideMainWindow::invertersChanged, &listener,
                     [&changes](const InverterList &inverters) { changes << inverters.size(); });
    int run = 0;
    for (int workers : {1, 2, 8}) {
        window->findChild<Reinversion *>()->setWorkerCount(workers);
        startReinversion({map});
        EXPECT_TRUE(canReinvert() && canCancel() && window->isReinverting());
        waitForReinversion();
        expectSpectraOf(loaded(map));
        const QString tag = QString(" reinv-%1").arg(++run);
        EXPECT_EQ(spectrumNames(),
                  (QStringList{"ions neg" + tag, "ions pos" + tag, "particles neg" + tag, "particles pos" + tag}));
        EXPECT_EQ(window->inverters().size(), 4u);
        EXPECT_TRUE(canReinvert());
        EXPECT_FALSE(canCancel());
    }
    EXPECT_EQ(changes, (QVector<std::size_t>{4, 4, 4}));
    const QString text = log();
    EXPECT_EQ(text.count("] Starting reinversion"), 3);
    EXPECT_EQ(text.count("] Reinversion finished!"), 3);
    // The day files' spectra have the same hashes.
    EXPECT_EQ(text.count("] Removing existing spectrum 'ions neg' with same hash as 'ions neg' (3 times)"), 1);
    EXPECT_EQ(text.count("] Removing spectrum 'particles pos' from memory."), 3);
    EXPECT_EQ(QSettings(settingsFile(), QSettings::IniFormat).value("lastreinvpath").toString(), path("inverters"));

    window->closeData();
    EXPECT_TRUE(window->inverters().empty());
    EXPECT_FALSE(canReinvert() || canCancel());
    open();
    reinvert();
    EXPECT_EQ(spectrumNames().first(), "ions neg reinv-1") << "counted anew";
}

TEST_F(ReinversionTest, AddsToWhatWasReadAndTakesAwayAgain)
{
    open();
    const int particles =
        recordsWith("demo") - int(window->datastore()->series(window->uiInfo()->spectrumInfos()[0].get())->size());
    const QStringList read = spectrumNames();
    reinvert(writeVariants(2));
    EXPECT_EQ(recordsWith("variant0"), recordsWith("variant1"));
    EXPECT_EQ(spectrumNames().size(), read.size() + 2);
    EXPECT_EQ(spectrumNames().last(), "particles neg (variant1) reinv-1");
    EXPECT_EQ(recordsWith("variant1"), particles);

    const UiInfo::InfoPointer first = window->uiInfo()->spectrumInfos()[4],
                              second = window->uiInfo()->spectrumInfos()[5];
    EXPECT_TRUE(window->uiInfo()->spectrumColors().contains(first->hash));
    window->removeSpectrum(first.get());
    window->removeSpectrum(first.get());
    EXPECT_EQ(recordsWith("variant0"), 0);
    EXPECT_EQ(recordsWith("variant1"), particles);
    EXPECT_EQ(window->datastore()->series(first.get()), nullptr);
    EXPECT_FALSE(window->uiInfo()->spectrumColors().contains(first->hash));
    ASSERT_EQ(window->inverters().size(), 1u);
    EXPECT_EQ(window->inverters()[0]->info(), second);
    EXPECT_EQ(log().count("] Removing spectrum 'particles neg' from memory."), 1);
    window->removeSpectrum(second.get());
    EXPECT_EQ(spectrumNames(), read);
}

TEST_F(ReinversionTest, InvertersThatFitNoModeAreLeftOutAndEqualOnesRunOnce)
{
    write("fog.inverter", contentOf("inverters/ions-neg.inverter").replace("opmode: ions", "opmode: fog"));
    open();
    const QStringList read = spectrumNames();
    const int ions = recordsWith("demo");
    reinvert({"fog.inverter"});
    EXPECT_EQ(spectrumNames(), read);
    EXPECT_EQ(recordsWith("demo"), ions);
    EXPECT_TRUE(window->inverters().empty());
    EXPECT_TRUE(log().contains("] No inverters specified"));
    EXPECT_TRUE(log().contains("Reinversion finished!"));
    reinvert({"fog.inverter", map, "inverters/demo.sinp"}); // the same four in each
    EXPECT_EQ(window->inverters().size(), 4u);
    EXPECT_EQ(spectrumNames().last(), "particles pos reinv-2") << "the run without inverters counts";
    expectSpectraOf(loaded(map));
    EXPECT_EQ(log().count(QRegularExpression("Removing existing spectrum.*\\(2 times\\)")), 4);
}

TEST_F(ReinversionTest, ErrorsCostTheirInverterAlone)
{
    write("bad.inverter", "format: 7\n");
    write("bad.invmap", "no: [list\n");
    write("other.txt", "nothing of the kind");
    // Without a group it is given the currents of both polarities.
    write("wide.inverter", contentOf("inverters/ions-neg.inverter").replace("electrometer_group: neg\n", ""));
    open();
    withDialog<QFileDialog>([this](QFileDialog &dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Open inverters");
        EXPECT_EQ(dialog.nameFilters().first(), "Inverters (*.inverter *.sinv *.sinp *.invmap *.zip)");
        dialog.reject();
    });
    const QString quiet = log();
    window->reinvert();
    EXPECT_EQ(log(), quiet) << "a wish that is taken back leaves no trace";

    reinvert({"bad.inverter", "bad.invmap"});
    EXPECT_TRUE(log().contains("Reinversion failed!"));
    reinvert({"other.txt"});
    EXPECT_TRUE(log().contains("] No inverters!"));
    EXPECT_FALSE(log().contains("Starting reinversion"));
    reinvert({"bad.inverter", "wide.inverter", map, "bad.invmap"});
    const QString text = log();
    EXPECT_EQ(text.count("Errors reading inverters:"), 2);
    EXPECT_EQ(text.count("Inverter requires a newer"), 2);
    EXPECT_EQ(text.count("Using the inverters that were loaded successfully."), 1);
    EXPECT_TRUE(text.contains("Inversion error: "));
    EXPECT_EQ(text.count("Reinversion finished!"), 1);
    EXPECT_EQ(window->inverters().size(), 5u);
    EXPECT_EQ(spectrumNames().last(), "particles pos reinv-1") << "failed runs don't count";
    expectSpectraOf(loaded(map));
}

TEST_F(ReinversionTest, InvertersThatTakeLongAreReadOnAThreadBehindADialogThatCanCancel)
{
    open();
    const QString quiet = log();
    write("long.zip", slowPack(60));
    const auto dialog = [this] { return QPointer<QDialog>(window->findChild<QDialog *>()); };
    const auto isRead = [this] { return !isLoading(); };

    chooseInverters({"long.zip"});
    QPointer<QDialog> shown = dialog();
    ASSERT_TRUE(shown);
    EXPECT_TRUE(shown->isVisible());
    EXPECT_EQ(shown->windowModality(), Qt::WindowModal);
    EXPECT_EQ(shown->windowTitle(), "Reading inverters");
    const auto *label = shown->findChild<QLabel *>();
    EXPECT_TRUE(QTest::qWaitFor([label] { return label->text().contains("long.zip"); }, 60000));
    window->reinvert();
    QTest::keyClick(shown, Qt::Key_Escape);
    EXPECT_EQ(label->text(), "Stopping after this inverter");
    shown->close();
    EXPECT_TRUE(shown->isVisible()) << "it stands until the entry is done";
    EXPECT_TRUE(QTest::qWaitFor(isRead, 20000));
    EXPECT_FALSE(shown) << "it is gone, not hidden";
    EXPECT_EQ(log(), quiet) << "a wish that is taken back leaves no trace";

    chooseInverters({"long.zip"});
    window->closeData();
    EXPECT_TRUE(QTest::qWaitFor(isRead, 20000));
    EXPECT_FALSE(window->isReinverting());
    EXPECT_FALSE(log().contains("Errors reading"));

    open();
    chooseInverters({"long.zip"});
    QElapsedTimer timer;
    timer.start();
    window.reset();
    EXPECT_LT(timer.elapsed(), 6000) << "the window's end doesn't wait for all entries";
    makeWindow();

    open();
    write("long.zip", slowPack(3));
    chooseInverters({"long.zip", map});
    shown = dialog();
    EXPECT_TRUE(QTest::qWaitFor(isRead, 60000));
    EXPECT_FALSE(shown);
    waitForReinversion();
    EXPECT_EQ(log().count("has bad structure"), 3);
    EXPECT_EQ(window->inverters().size(), 4u);
}

TEST_F(ReinversionTest, CancelledInTheMiddleBeginsNoFurtherRecord)
{
    open();
    startLongReinversion();
    int taken = 0;
    QObject::connect(window->datastore().get(), &Datastore::updated, [&] { ++taken; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return taken > 5; }, 60000));
    ASSERT_TRUE(window->isReinverting());
    action("Cancel reinversion")->trigger();
    const int atCancel = taken;
    EXPECT_FALSE(window->isReinverting() || canCancel());
    EXPECT_TRUE(canReinvert());
    QTest::qWait(200);
    EXPECT_EQ(taken, atCancel);
    EXPECT_TRUE(log().contains(QString("Reinversion cancelled after %1 of %2 records")
                                   .arg(QString::number(atCancel), QString::number(window->datastore()->size()))));
    EXPECT_EQ(window->findChildren<QThread *>().size(), 0) << "the queue and its threads are gone";
    EXPECT_LT(recordsWith("variant0"), recordsWith("demo"));
    EXPECT_GT(recordsWith("variant0"), 0) << "what came in stays";
    window->cancelReinvert();
    EXPECT_EQ(log().count("cancelled"), 1) << "nothing to cancel";
    reinvert();
    EXPECT_EQ(spectrumNames().last(), "particles pos reinv-2");
}

TEST_F(ReinversionTest, ASecondOneAsksWhetherToAbortTheFirst)
{
    open();
    for (const bool abort : {false, true}) {
        startLongReinversion();
        withDialog<QMessageBox>([abort](QMessageBox &box) {
            EXPECT_EQ(box.text(), "An inversion already in progress.");
            EXPECT_EQ(box.informativeText(), "Do you want to abort the current inversion?");
            EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::Cancel));
            QTest::mouseClick(box.button(abort ? QMessageBox::Abort : QMessageBox::Cancel), Qt::LeftButton);
        });
        action("Reinvert...")->trigger();
        EXPECT_EQ(window->isReinverting(), !abort);
        waitForReinversion();
        EXPECT_EQ(log().contains("Reinversion cancelled"), abort);
    }
}

TEST_F(ReinversionTest, OneThatBeganBehindTheChoiceOfInvertersIsNotMetByASecond)
{
    open();
    withDialog<QFileDialog>([this](QFileDialog &dialog) {
        startLongReinversion();
        withDialog<QMessageBox>([](QMessageBox &box) { box.reject(); });
        dialog.setDirectory(path("inverters"));
        dialog.findChild<QLineEdit *>("fileNameEdit")->setText("demo.invmap");
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    window->reinvert();
    EXPECT_TRUE(window->isReinverting());
    window->cancelReinvert();
    EXPECT_FALSE(log().contains("software bug"));
}

TEST_F(ReinversionTest, DataAreClosedOrReplacedDuringARun)
{
    writeDemoData(path("other"), 1200, 1, 2);
    open();
    const std::weak_ptr<Datastore> old = window->datastore();
    startLongReinversion();
    open("other");
    EXPECT_FALSE(window->isReinverting() || canCancel());
    EXPECT_TRUE(canReinvert());
    EXPECT_TRUE(log().contains("Reinversion cancelled"));
    EXPECT_TRUE(old.expired());
    EXPECT_EQ(recordsWith("variant0"), 0);
    EXPECT_EQ(spectrumNames().size(), 4);
    reinvert();
    expectSpectraOf(loaded(map));

    startLongReinversion();
    window->closeData();
    EXPECT_FALSE(window->isReinverting() || canCancel() || canReinvert());
    EXPECT_EQ(window->findChild<QLabel *>("queueStatusLabel")->text(), "");
    QTest::qWait(50);
}

TEST_F(ReinversionTest, TheStatusBarTellsTheRate)
{
    const auto *label = window->findChild<QLabel *>("queueStatusLabel");
    window->inversionQueueStatus(0, 17);
    EXPECT_EQ(label->text(), "17 records/s");
    window->inversionQueueStatus(1, 1234);
    EXPECT_EQ(label->text(), "1234 records/s (1 in queue)");
    window->reinversionFinished();
    EXPECT_EQ(label->text(), "");
}

TEST_F(ReinversionTest, ARunThatTakesAMomentShowsHowFarItIs)
{
    open();
    window->show();
    const auto *bar = window->findChild<QProgressBar *>("reinversionBar");
    EXPECT_FALSE(bar->isVisible());
    window->findChild<Reinversion *>()->setWorkerCount(1);
    startReinversion(writeVariants(300));
    EXPECT_TRUE(QTest::qWaitFor([bar] { return bar->isVisible() && bar->value() > 0; }));
    EXPECT_EQ(bar->maximum(), window->datastore()->size());
    window->cancelReinvert();
    EXPECT_FALSE(bar->isVisible());
}

TEST(ReinversionRun, RecordsThatNobodyTakesEndIt)
{
    const auto store = std::make_shared<Datastore>();
    store->setLimitRecords(false);
    for (int i = 0; i < 3000; ++i) {
        const auto record = testRecord(i, i + 1, 0);
        record->interim = true;
        store->addFullRecord(record);
    }
    Reinversion run;
    QSignalSpy finished(&run, &Reinversion::finished);
    for (const auto &data : {store, std::make_shared<Datastore>()}) {
        finished.clear();
        run.start(data, std::make_shared<Spectrometer::RecordMetadata>(), {});
        EXPECT_TRUE(run.isRunning());
        EXPECT_TRUE(finished.wait());
        EXPECT_FALSE(run.isRunning());
        EXPECT_EQ(run.recordCount(), 0);
    }
}
