#pragma once

#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/morvantide/reviewwindow.h"
#include "support/commands.h"
#include "support/gestures.h"
#include "windowsetup/setupfile.h"

#include <QMenu>
#include <QSettings>

/// A demonstration with few records, a window of one size upon it, and the layouts beside the data.
class Layouts : public ReviewWindow {
protected:
    Layouts() : ReviewWindow(7200) { show(); }
    ~Layouts() override { window.reset(); } // while there is a folder to save in

    void show()
    {
        window->resize(1300, 900);
        window->show();
        settle();
    }
    /// Ends the program and starts it again.
    void restart()
    {
        window->close();
        window.reset();
        makeWindow();
        show();
    }
    void open(const QString &name = "demo")
    {
        ReviewWindow::open(name);
        settleDrawing();
    }
    /// Until plots that repaint at their own pace have done so.
    static void settleDrawing()
    {
        QTest::qWait(30);
        settle();
    }
    Tsb::TimeSeriesBrowser &browser() const { return *window->browser(); }
    QDockWidget *dock(const QString &name) const { return window->findChild<QDockWidget *>(name); }
    void setAutosave(bool on) const { action("Autosave layout")->setChecked(on); }
    bool isAutosaving() const { return action("Autosave layout")->isChecked(); }
    QAction *found(const QString &name) const
    {
        auto *const menu = action("Layouts of the data")->menu();
        Q_EMIT menu->aboutToShow();
        return commandOf(menu->actions(), name);
    }
    static QVariantMap setupIn(const QString &file) { return WindowSetup::readSetupFile(file).setup; }
    QString standard() const { return path("demo/default.windowsetup"); }
    QSettings settings() const { return QSettings(settingsFile(), QSettings::IniFormat); }
};
