#include "datafiles/reading/commentfile.h"
#include "datafiles/writing/recordwriting.h"
#include "gui/common/dataexport/dataexportdialog.h"
#include "gui/morvantide/reinversion.h"
#include "gui/morvantide/reviewwindow.h"

#include <map>
#include <random>

// Reading, inverting, commenting, cancelling, saving, exporting and closing in random orders. Meant for the sanitizers:
// nothing is expected but that whatever happens the window is in one of its states, with the commands of that state.

namespace {

class RandomOrders : public ReviewWindow {
protected:
    RandomOrders() : ReviewWindow(1800)
    {
        writeDemoData(path("other"), 2400, 1, 2);
        m_files = writeVariants(6) + writeVariants(2, "ions") +
                  QStringList{"inverters/demo.invmap", "inverters/ions-pos.inverter", "variants"};
    }

    int below(int end) { return int(m_random() % unsigned(end)); }

    /// Lets the event loop run for a while, or not at all.
    void pass()
    {
        static constexpr int waits[] = {-1, 0, 1, 3, 10, 30};
        const int wait = waits[below(6)];
        if (wait >= 0)
            QTest::qWait(wait);
    }

    void read() { startOpening(path(below(2) ? "demo" : "other")); }
    void invert()
    {
        if (!window->datastore() || window->isReinverting())
            return;
        window->findChild<Reinversion *>()->setWorkerCount(1 + below(4));
        QStringList chosen;
        for (int i = 1 + below(3); i > 0; --i)
            chosen << m_files[below(m_files.size() - 1)];
        startReinversion(chosen);
        EXPECT_TRUE(window->isReinverting());
    }
    void discard()
    {
        const auto infos = window->uiInfo()->spectrumInfos();
        if (!infos.isEmpty())
            window->removeSpectrum(infos[below(infos.size())].get());
    }
    /// Writes what there is, results of a run under way included, and lets the run go on between rows.
    void save()
    {
        const auto store = window->datastore();
        if (!store)
            return;
        const auto metadata = std::make_shared<Spectrometer::RecordMetadata>(*window->uiInfo()->metadata());
        auto settings = Spectrometer::dayFileSettings(path("saved"), "saved", metadata);
        settings.spectra = Spectrometer::spectraByMode(*store, *metadata, window->uiInfo()->spectrumInfos().toVector());
        Spectrometer::PlainFileOutput output(settings);
        Spectrometer::writeRecords(output, *store, 2, [](int done) {
            if (done % 20 == 0)
                QCoreApplication::processEvents();
            return true;
        });
        EXPECT_EQ(output.counts().lost, 0);
    }
    /// Asks for a table of all spectra. It is written in a later turn of the event loop, which runs on meanwhile.
    void exportTable()
    {
        window->showExportData();
        const auto dialogs = window->findChildren<DataExportDialog *>();
        if (dialogs.isEmpty())
            return;
        QVariantList spectra;
        for (const auto &info : window->uiInfo()->spectrumInfos())
            spectra << info->hash;
        dialogs.last()->setSetup({{"general", QVariantMap{{"output_file", path("table%1.txt").arg(++m_tables)}}},
                                  {"fields", QVariantList{QVariantMap{{"type", "spectrum"}, {"spectra", spectra}},
                                                          QVariantMap{{"type", "electrometer"}}}}});
        Q_EMIT dialogs.last()->requestExport(dialogs.last()->setup());
    }
    void renew()
    {
        window.reset();
        makeWindow();
    }
    /// Types a comment on a record, and leaves it half typed.
    void comment()
    {
        const auto store = window->datastore();
        if (!store)
            return;
        const auto record = store->at(below(store->size()));
        window->showRecord(record);
        QCoreApplication::processEvents(); // which may open other data
        if (window->shownRecord() != record)
            return;
        auto *line = window->findChild<QLineEdit *>("commentEdit");
        const QString text = QString("comment %1").arg(++m_typed);
        line->selectAll();
        QTest::keyClicks(line, text);
        m_comments[{window->folderPath(), record->beginTime}] = text;
    }

    /// One act after the other, with a pass of the event loop between them or not.
    void go()
    {
        for (int acts = 3 + below(4); acts > 0; --acts) {
            switch (below(10)) {
            case 0:
                read();
                break;
            case 1:
                read();
                EXPECT_TRUE(QTest::qWaitFor([this] { return !window->isReading(); }, 60000));
                break;
            case 2:
            case 3:
                invert();
                break;
            case 4:
                below(2) ? window->cancelReinvert() : window->cancelFileReader();
                break;
            case 5:
                save();
                break;
            case 6:
                below(2) ? window->closeData() : discard();
                break;
            case 7:
                if (below(2) == 0)
                    renew();
                break;
            case 8:
                comment();
                break;
            case 9:
                exportTable();
                break;
            }
            pass();
            expectOneState();
        }
    }
    void expectOneState() const
    {
        EXPECT_EQ(window->datastore(), window->currentDatastoreFor(0));
        EXPECT_TRUE(!window->datastore() || !window->folderPath().isNull());
        EXPECT_TRUE(window->datastore() || !window->isReinverting());
        EXPECT_TRUE(window->datastore() ||
                    (window->uiInfo()->spectrumInfos().isEmpty() && window->inverters().empty()));
    }
    void expectAllComments() const
    {
        std::map<std::pair<QString, RecordTime>, QString> found;
        for (const QString folder : {"demo", "other"})
            for (const QString &file : findCommentFiles(path(folder), "block", earliestRecordTime, latestRecordTime))
                readCommentFile(file, [&](const CommentLine &line) { found[{path(folder), line.begin}] = line.text; });
        for (const auto &comment : m_comments)
            EXPECT_EQ(found[comment.first].toStdString(), comment.second.toStdString());
        EXPECT_EQ(found.size(), m_comments.size());
        EXPECT_GT(found.size(), 10u);
    }

private:
    std::mt19937 m_random{20190514};
    std::map<std::pair<QString, RecordTime>, QString> m_comments; ///< that were typed last, by folder and record
    int m_typed = 0;
    int m_tables = 0;
    QStringList m_files;
};

} // namespace

TEST_F(RandomOrders, LeaveTheWindowInOneOfItsStatesAndLoseNoComment)
{
    constexpr int orders = 200;
    for (int order = 0; order < orders; ++order) {
        SCOPED_TRACE(order);
        go();
        if (HasFailure())
            break;
    }
    window.reset();
    EXPECT_GT(QDir(path({})).entryList({"table*.txt"}).size(), 10);
    EXPECT_EQ(QDir(path({})).entryList({"*.unfinished"}), QStringList());
    expectAllComments();
}
