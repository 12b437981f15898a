#include "gui/frame/keylist.h"
#include "gui/frame/menumnemonics.h"
#include "gui/frame/windowkeys.h"
#include "support/gestures.h"

#include <QAction>
#include <QDockWidget>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QTest>
#include <QTextBrowser>

#include <gtest/gtest.h>

TEST(MenuMnemonics, EachEntryGetsALetterOfItsOwn)
{
    const struct {
        QStringList texts, marked;
    } table[] = {
        {{"Save layout", "Save layout copy..."}, {"&Save layout", "Save &layout copy..."}},
        {{"Open", "&Other", "Of&f", "o"}, {"O&pen", "O&ther", "Of&f", "&o"}}, // one gives way
        {{"ab", "a", "b"}, {"a&b", "&a", "&b"}},                              // no other way
        {{"&Quit", "&Query"}, {"&Quit", "Q&uery"}},
        {{"1 /a && b", "Größe", "..."}, {"&1 /a && b", "&Größe", "..."}},
        {{"a b", "b"}, {"&a b", "&b"}},
    };
    for (const auto &row : table) {
        EXPECT_EQ(withMnemonics(row.texts), row.marked);
        EXPECT_EQ(withMnemonics(row.marked), row.marked) << "a menu keeps its letters when it is shown again";
    }
    EXPECT_EQ(withoutMnemonic("R && &D && &x"), "R & D & &x");
}

TEST(MenuMnemonics, MenusThatAreFilledWhenTheyAreShownGetThem)
{
    const MenuMnemonics mnemonics(nullptr);
    QMenu menu;
    menu.addAction("one");
    menu.addSeparator();
    menu.addAction("other")->setVisible(false);
    menu.popup(QPoint());
    EXPECT_EQ(menu.actions().first()->text(), "&one");
    EXPECT_EQ(menu.actions().last()->text(), "other");
}

namespace {

struct Window : QMainWindow {
    WindowKeys keys{this};
    QLineEdit *first = addDock("First", "filterLine");
    QLineEdit *second = addDock("Second", "filterLine");
    QLineEdit *other = addDock("Other", "line");

    Window()
    {
        auto *menu = menuBar()->addMenu("&Menu");
        menu->addActions({keys.filterAction(), keys.fullScreenAction(), keys.pageAction()});
        auto *withIcon = new QAction(QIcon(QPixmap(4, 4)), "&Take <it>...", this);
        withIcon->setShortcut(Qt::CTRL + Qt::Key_T);
        menu->addMenu("more")->addAction(withIcon);
        addDock("Keys", "")->addAction(new QAction("hidden", this));
        auto *shortcut = new QShortcut(Qt::Key_Right, this);
        shortcut->setWhatsThis("Next");
        setCentralWidget(new QWidget);
        resize(700, 700);
        show();
        activateWindow();
        settle();
    }
    QLineEdit *addDock(const QString &title, const QString &name)
    {
        auto *dock = new QDockWidget(title, this);
        auto *line = new QLineEdit(dock);
        line->setObjectName(name);
        dock->setWidget(line);
        addDockWidget(Qt::RightDockWidgetArea, dock);
        return line;
    }
};

} // namespace

TEST(WindowKeys, TheFilterOfTheDockAtHandGetsTheKeys)
{
    Window window;
    const auto pressed = [&window](QWidget *from) {
        from->setFocus();
        QTest::keyClick(window.windowHandle(), Qt::Key_F, Qt::ControlModifier);
        settle();
        return QApplication::focusWidget();
    };
    EXPECT_EQ(pressed(window.second), window.second) << "the one that has the focus";
    EXPECT_EQ(pressed(window.other), window.first) << "this dock has no filter";
    auto *const dock = qobject_cast<QDockWidget *>(window.first->parentWidget());
    dock->hide();
    EXPECT_EQ(pressed(window.other), window.second) << "one that is in sight";
    qobject_cast<QDockWidget *>(window.second->parentWidget())->hide();
    EXPECT_EQ(pressed(window.other), window.first);
    EXPECT_FALSE(dock->isHidden()) << "else one comes up";
}

TEST(WindowKeys, TellsKeysInToolTipsAndOnThePage)
{
    Window window;
    window.keys.nameKeysInToolTips();
    window.keys.nameKeysInToolTips();
    EXPECT_EQ(window.findChild<QMenu *>()->actions().last()->menu()->actions().first()->toolTip(),
              "Take <it> (Ctrl+T)");

    window.keys.pageAction()->trigger();
    settle();
    const QString page = window.findChild<QTextBrowser *>()->toPlainText();
    for (const char *text : {"Menu", "Ctrl+F\nGo to filter", "F11\nFull screen", "Ctrl+T\nTake <it>", "Right\nNext"})
        EXPECT_TRUE(page.contains(text)) << text << '\n' << qPrintable(page);
    for (const KeySection &section : gestures())
        EXPECT_TRUE(page.contains(section.title)) << qPrintable(section.title);
}

TEST(WindowKeys, FullScreenIsLeftByTheSameKey)
{
    Window window;
    for (const bool on : {true, false}) {
        QTest::keyClick(window.windowHandle(), Qt::Key_F11);
        settle();
        EXPECT_EQ(window.isFullScreen(), on);
        EXPECT_EQ(window.keys.fullScreenAction()->isChecked(), on);
    }
}
