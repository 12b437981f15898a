#include "gui/common/tsb/plot.h"
#include "gui/common/tsb/timeseriesbrowser.h"
#include "gui/morvantide/morvantide_mainwin.h"
#include "log/logger.h"
#include "resources/resources.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <clocale>
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

/// Clicks upon the first plot, three quarters along the time axis.
bool selectRecord(const MorvantideMainWindow &window)
{
    const auto plots = window.browser()->findChildren<Tsb::Plot *>();
    if (plots.isEmpty())
        return false;
    QWidget *const plot = plots.first();
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
    std::setlocale(LC_NUMERIC, "C");
    QLocale::setDefault(QLocale(QLocale::C, QLocale::AnyCountry));
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
    if (!selectRecord(window))
        return fail("no record could be selected");
    if (!window.grab().save(arguments[1]))
        return fail("the picture can't be written");
    std::printf("%s\n", qPrintable(QFileInfo(arguments[1]).absoluteFilePath()));
    return 0;
}
