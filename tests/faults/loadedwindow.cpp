#include "faults/loadedwindow.h"

#include "gui/frame/menumnemonics.h"
#include "gui/morvantide/datachooserdialog.h"
#include "log/logger.h"
#include "resources/resources.h"
#include "util/programlocale.h"

#include <QAction>
#include <QDesktopServices>

namespace Faults {

WindowApplication::WindowApplication(int &argc, char **argv) : m_application(argc, argv)
{
    Log::installQtMessageHandler();
    registerResources();
    setProgramLocale();
    QApplication::setQuitOnLastWindowClosed(false);
    for (const char *scheme : {"file", "http", "https", "mailto"})
        QDesktopServices::setUrlHandler(scheme, this, "ignore");
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

void LoadedWindow::startOpening(const QString &name) const
{
    const QVariantMap choice{{"folderName", path(name)}, {"variant", "block"}, {"legacyFiles", false}};
    answer<DataChooserDialog>([choice](DataChooserDialog &dialog) {
        dialog.setChoice(choice);
        dialog.accept();
    });
    window->showDataDirChoice();
}

bool LoadedWindow::open(const QString &name) const
{
    startOpening(name);
    return Child::require(QTest::qWaitFor([this] { return !window->isReading(); }, 120000) && window->datastore(),
                          "the data weren't read");
}

} // namespace Faults
