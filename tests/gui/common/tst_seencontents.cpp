#include "gui/common/seencontents.h"
#include "support/gestures.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QTabBar>
#include <QTextEdit>

#include <gtest/gtest.h>

namespace {

/// A window with two docks, of which the first counts how often its contents were refreshed.
struct Window : QMainWindow {
    QDockWidget *dock = makeDock("counted");
    QDockWidget *other = makeDock("other");
    int refreshes = 0;
    SeenContents *contents = new SeenContents(dock, [this] { ++refreshes; });

    Window()
    {
        setCentralWidget(new QTextEdit(this));
        addDockWidget(Qt::LeftDockWidgetArea, dock);
        addDockWidget(Qt::LeftDockWidgetArea, other);
        resize(600, 400);
    }
    QDockWidget *makeDock(const char *name)
    {
        auto *made = new QDockWidget(name, this);
        made->setObjectName(name);
        made->setWidget(new QTextEdit(made));
        return made;
    }
    /// How often a change leads to a refresh, now and when the event loop has run.
    int refreshesOf(const std::function<void()> &change)
    {
        const int before = refreshes;
        change();
        settle();
        return refreshes - before;
    }
    void makeStale() { contents->setStale(); }
};

} // namespace

TEST(SeenContents, AreRefreshedOnceWhenTheyComeIntoSight)
{
    Window window;
    const auto stale = [&] { window.makeStale(); };
    EXPECT_EQ(window.refreshesOf(stale), 0) << "the window isn't shown yet";
    EXPECT_EQ(window.refreshesOf([&] { window.show(); }), 1);
    EXPECT_EQ(window.refreshesOf(stale), 1);
    EXPECT_EQ(window.refreshesOf([&] { window.resize(700, 500); }), 0) << "they aren't stale";

    const struct {
        const char *name;
        std::function<void()> hide, show;
    } ways[] = {
        {"closed", [&] { window.dock->close(); }, [&] { window.dock->show(); }},
        {"behind another tab",
         [&] {
             window.tabifyDockWidget(window.dock, window.other);
             window.other->raise();
         },
         [&] { window.dock->raise(); }},
        {"behind another tab, chosen by the mouse", [&] { window.other->raise(); },
         [&] { window.findChild<QTabBar *>()->setCurrentIndex(0); }},
        {"behind another tab, then floating", [&] { window.other->raise(); }, [&] { window.dock->setFloating(true); }},
        {"floating and closed", [&] { window.dock->close(); }, [&] { window.dock->show(); }},
        {"in a closed window",
         [&] {
             window.dock->setFloating(false);
             window.hide();
         },
         [&] {
             window.show();
             window.dock->raise();
         }},
    };
    for (const auto &way : ways) {
        SCOPED_TRACE(way.name);
        way.hide();
        settle();
        EXPECT_EQ(window.refreshesOf([&] {
            stale();
            stale();
        }),
                  0);
        EXPECT_TRUE(window.contents->areStale());
        EXPECT_EQ(window.refreshesOf(way.show), 1);
        EXPECT_EQ(window.refreshesOf(stale), 1) << "seen again, they are refreshed at once";
    }
}

TEST(SeenContents, AFloatingDockIsSeen)
{
    Window window;
    window.show();
    window.dock->setFloating(true);
    settle();
    EXPECT_EQ(window.refreshesOf([&] { window.makeStale(); }), 1);
    EXPECT_EQ(window.refreshesOf([&] { window.dock->setFloating(false); }), 0);
}
