// The window follows a folder in which an instrument writes.

#include "datafiles/reading/filereadertask.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/uiinfo.h"
#include "gui/morvantide/datachooserdialog.h"
#include "gui/morvantide/morvantide_mainwin.h"
#include "support/livewriting.h"

#include <QAction>
#include <QApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <functional>

#include <unistd.h>

namespace {

void turnUntil(const std::function<bool()> &isDone)
{
    QElapsedTimer clock;
    for (clock.start(); !isDone() && clock.elapsed() < 60000;)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    if (!isDone())
        qFatal("the window doesn't come to it");
}

void acceptChooser(const QVariantMap &choice)
{
    QTimer::singleShot(0, [choice] {
        auto *dialog = qobject_cast<DataChooserDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return acceptChooser(choice);
        dialog->setChoice(choice);
        dialog->accept();
    });
}

/// Bytes of the process in memory.
double residentBytes()
{
    long pages = 0, resident = 0;
    if (FILE *file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &pages, &resident) != 2)
            resident = 0;
        std::fclose(file);
    }
    return double(resident) * double(::sysconf(_SC_PAGESIZE));
}

/// 200 records a second with their spectra, for ten minutes, onto 100 000 that are there; the default views, and the
/// latest record shown. The bytes are those of a record that came in, and of one that was read.
void followFolder(benchmark::State &state)
{
    const int told = qEnvironmentVariableIntValue("MORVANTIDE_FOLLOW_SECONDS"), seconds = told > 0 ? told : 600;
    GrowingFolder folder;
    for (int i = 0; i < 100; ++i) {
        folder.write(1000);
        folder.flush(true);
    }
    QTemporaryDir settings;
    MorvantideMainWindow window(settings.filePath("morvantide.conf"));
    window.resize(1600, 1000);
    window.show();
    for (auto _ : state) {
        const double empty = residentBytes();
        acceptChooser({{"folderName", folder.path()}, {"variant", "block"}});
        window.showDataDirChoice({});
        turnUntil([&window] { return !window.isReading() && window.datastore(); });
        const int read = window.datastore()->size();
        const auto store = window.datastore();
        const double full = residentBytes();
        for (QAction *action : window.findChildren<QAction *>())
            if (action->text() == "Follow folder")
                action->trigger();
        window.setFollowLast(true);
        const LoopTurns turns = turnWhileWriting(folder, seconds);
        turnUntil([&] { return store->size() == folder.count(); });
        if (window.datastore() != store)
            qFatal("it was read again");
        state.counters["records"] = store->size() - read;
        state.counters["longest_ms"] = turns.longest;
        state.counters["longest_work_ms"] = turns.longestWork;
        state.counters["99.9%_ms"] = turns.percentile999;
        state.counters["bytes_read"] = (full - empty) / read;
        state.counters["bytes_followed"] = (residentBytes() - full) / (store->size() - read);
    }
}
BENCHMARK(followFolder)->Iterations(1)->Unit(benchmark::kSecond);

} // namespace
