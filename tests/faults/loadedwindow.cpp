#include "faults/loadedwindow.h"

#include "gui/frame/menumnemonics.h"
#include "gui/morvantide/datachooserdialog.h"
#include "log/logger.h"
#include "resources/resources.h"
#include "util/programlocale.h"

#include <QAction>
#include <QDesktopServices>
#include <QFileDialog>
#include <QLineEdit>
#include <QRegularExpression>

namespace Faults {

WindowApplication::WindowApplication(int &argc, char **argv) : m_application(argc, argv)
{
    Log::installQtMessageHandler();
    // Entries come on any thread.
    connect(&Log::RootLogger::instance(), &Log::RootLogger::newEntry, this, &WindowApplication::judge,
            Qt::DirectConnection);
    registerResources();
    setProgramLocale();
    QApplication::setQuitOnLastWindowClosed(false);
    for (const char *scheme : {"file", "http", "https", "mailto"})
        QDesktopServices::setUrlHandler(scheme, this, "ignore");
}

void WindowApplication::judge(const Log::Entry &entry)
{
    static const std::pair<const char *, const char *> counted[] = {
        {"Starting reinversion", "reinversions"},
        {"Reinversion cancelled", "reinversions cancelled"},
        {"Reinversion finished", "reinversions finished or cancelled"},
        {"Saving was stopped", "saves cancelled"},
        {" rows written to ", "saves and exports"},
        {"Can not open files while", "refused reads"},
        {"The data stay as they were", "failed reads"}};
    for (const auto &[words, name] : counted)
        if (entry.message.contains(QLatin1String(words)))
            Child::count(name);
    // The toolkit complains of what its classes were asked in vain: "QObject::connect: ...", "QPainter::begin: ...".
    static const QRegularExpression complaint("^Q[A-Z]\\w+(::|: )");
    // The choice of a colour takes it off the screen if it is asked to: there is none.
    const bool isOfScreen = entry.message.startsWith(QLatin1String("QImage::pixel: coordinate (0,0)"));
    if (entry.message.contains(QLatin1String("software bug")) ||
        (complaint.match(entry.message).hasMatch() && !isOfScreen))
        Child::fail(entry.message);
}

void LoadedWindow::makeWindow()
{
    window.reset(); // which writes its settings
    window = std::make_unique<MorvantideMainWindow>(path("morvantide.conf"));
    window->resize(1000, 700);
    window->show();
}

QAction *LoadedWindow::action(const QString &text) const
{
    for (QAction *one : window->findChildren<QAction *>())
        if (withoutMnemonic(one->text()) == text)
            return one;
    Child::fail("there is no command " + text);
    return nullptr;
}

void LoadedWindow::startOpening(const QString &folder) const
{
    const QVariantMap choice{{"folderName", folder}, {"variant", "block"}, {"legacyFiles", false}};
    answer<DataChooserDialog>([choice](DataChooserDialog &dialog) {
        dialog.setChoice(choice);
        dialog.accept();
    });
    window->showDataDirChoice();
}

void LoadedWindow::chooseFiles(const QStringList &files)
{
    answer<QFileDialog>([files](QFileDialog &dialog) {
        dialog.setDirectory(QFileInfo(files.first()).path());
        dialog.findChild<QLineEdit *>("fileNameEdit")->setText('"' + files.join("\" \"") + '"');
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
}

void LoadedWindow::invert(const QStringList &files) const
{
    chooseFiles(files);
    window->reinvert();
}

bool LoadedWindow::open(const QString &folder) const
{
    startOpening(folder);
    return Child::require(QTest::qWaitFor([this] { return !window->isReading(); }, 120000) && window->datastore(),
                          "the data weren't read");
}

} // namespace Faults
