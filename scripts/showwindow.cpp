#include "gui/browser/controls/header.h"
#include "gui/browser/controls/resizer.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/plots/spectrogramplot.h"
#include "gui/browser/views/spectrogramview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/morvantide/morvantide_mainwin.h"
#include "log/logger.h"
#include "resources/resources.h"
#include "support/gestures.h"
#include "util/programlocale.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

// showwindow PICTURE FOLDER [VARIANT]: drives the program's window as a user would, from the data dialog to a selected
// record, saves a picture of it and prints the picture's path. The window is the program's; its settings are kept
// apart.

namespace {

constexpr QSize pictureSize(1440, 900);
constexpr int patience = 10 * 60 * 1000; // ms
constexpr int settling = 1500;           // ms; views repaint at their own pace

/// The dialog stands in an event loop of its own, so that what answers it comes from a timer.
void acceptDialogWhenShown(MorvantideMainWindow &window)
{
    auto *timer = new QTimer(&window);
    QObject::connect(timer, &QTimer::timeout, &window, [timer] {
        QWidget *const dialog = QApplication::activeModalWidget();
        if (!dialog)
            return;
        timer->deleteLater();
        QTest::keyClick(dialog, Qt::Key_Return);
    });
    timer->start(200);
}

bool waitForData(const MorvantideMainWindow &window)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < patience) {
        QTest::qWait(50);
        if (!window.isReading() && window.datastore())
            return true;
    }
    return false;
}

void drag(QWidget *widget, QPoint delta)
{
    const QPoint from = widget->rect().center();
    dragMouse(widget, from, {from + delta});
    QTest::qWait(50);
}

/// Room for the names and for the spectrograms, and all the time in what is left.
void arrange(const MorvantideMainWindow &window)
{
    const auto *header = window.browser()->findChild<Tsb::Header *>();
    drag(header->splitter()->handle(1), {70, 0});
    for (const auto *view : window.browser()->findChildren<Tsb::SpectrogramView *>())
        drag(view->findChild<Tsb::Resizer *>(), {0, 50});
    QTest::mouseDClick(window.browser()->timeView(), Qt::LeftButton);
    QTest::qWait(settling);
}

/// Clicks upon the first spectrogram, three quarters along the time axis.
bool selectRecord(const MorvantideMainWindow &window)
{
    auto *const plot = window.browser()->findChild<Tsb::SpectrogramPlot *>();
    if (!plot)
        return false;
    QTest::mouseClick(plot, Qt::LeftButton, Qt::NoModifier, {plot->width() * 3 / 4, plot->height() / 2});
    QTest::qWait(settling);
    return window.shownRecord() != nullptr;
}

int fail(const char *words)
{
    std::fprintf(stderr, "showwindow: %s\n", words);
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    Log::installQtMessageHandler();
    const QApplication application(argc, argv);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    setProgramLocale();
    registerResources();
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 3)
        return fail("PICTURE FOLDER [VARIANT]");

    const QTemporaryDir settings;
    MorvantideMainWindow window(settings.filePath(QStringLiteral("morvantide.conf")));
    window.resize(pictureSize);
    window.setPositionalArguments(arguments.mid(2));
    acceptDialogWhenShown(window);
    window.show();
    if (!waitForData(window))
        return fail("no data came in");
    QTest::qWait(settling);
    arrange(window);
    if (!selectRecord(window))
        return fail("no record could be selected");
    if (!window.grab().save(arguments[1]))
        return fail("the picture can't be written");
    std::printf("%s\n", qPrintable(QFileInfo(arguments[1]).absoluteFilePath()));
    return 0;
}
