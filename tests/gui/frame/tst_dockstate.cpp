#include "gui/frame/dockstate.h"
#include "support/gestures.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QTextEdit>
#include <QToolBar>

#include <gtest/gtest.h>

#include <array>

namespace {

struct Window : QMainWindow {
    std::array<QDockWidget *, 4> docks{};
    QToolBar *bar = addToolBar("bar");

    Window()
    {
        setDockNestingEnabled(true);
        setAnimated(false);
        setCentralWidget(new QTextEdit);
        bar->setObjectName("bar");
        bar->addAction("action");
        for (int i = 0; i < int(docks.size()); ++i) {
            docks[std::size_t(i)] = new QDockWidget(QString("dock %1").arg(i), this);
            docks[std::size_t(i)]->setObjectName(docks[std::size_t(i)]->windowTitle());
            docks[std::size_t(i)]->setWidget(new QTextEdit);
            addDockWidget(i % 2 ? Qt::LeftDockWidgetArea : Qt::RightDockWidgetArea, docks[std::size_t(i)]);
        }
        resize(800, 600);
        show();
        settle();
    }
    QVector<QRect> places() const
    {
        QVector<QRect> all{bar->geometry()};
        for (const QDockWidget *dock : docks)
            all << (dock->isFloating() ? QRect() : dock->geometry());
        return all;
    }
};

} // namespace

TEST(DockState, IsRestoredWhileADockOrABarIsDragged)
{
    Window window;
    QVariantMap state;
    storeDockState(state, window);
    const QVector<QRect> before = window.places();
    for (QWidget *part : {static_cast<QWidget *>(window.docks[0]), static_cast<QWidget *>(window.bar)}) {
        const QPoint from = part->mapToGlobal(QPoint(5, 8)), to = window.docks[1]->mapToGlobal(QPoint(50, 60));
        const auto send = [&](QEvent::Type type, const QPoint &at) {
            sendMouse(part, type, part->mapFromGlobal(at));
            settle();
        };
        send(QEvent::MouseButtonPress, from);
        for (int i = 1; i <= 5; ++i)
            send(QEvent::MouseMove, from + (to - from) * i / 5);
        EXPECT_NE(window.places(), before) << qPrintable(part->objectName());
        EXPECT_TRUE(restoreDockState(window, state).isNull());
        send(QEvent::MouseMove, to + QPoint(300, 100));
        send(QEvent::MouseButtonRelease, to);
        EXPECT_TRUE(restoreDockState(window, state).isNull());
        settle();
        EXPECT_EQ(window.places(), before) << qPrintable(part->objectName());
    }
}
