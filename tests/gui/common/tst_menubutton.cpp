#include "gui/common/menubutton.h"

#include <QMenu>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

TEST(MenuButton, ForgetsThePointerThatLeftWithTheMenu)
{
    QWidget window;
    window.resize(400, 300);
    auto *button = new MenuButton(&window);
    button->setGeometry(10, 10, 80, 24);
    auto *menu = new QMenu(button);
    menu->addAction(QStringLiteral("choice"));
    button->setMenu(menu);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    for (const bool stays : {false, true}) {
        QEvent enter(QEvent::Enter);
        QApplication::sendEvent(button, &enter);
        ASSERT_TRUE(button->underMouse());
        int shown = 0;
        QTimer::singleShot(0, menu, [&] {
            shown += menu->isVisible() ? 1 : 0;
            QCursor::setPos(stays ? button->mapToGlobal(QPoint(20, 10)) : window.mapToGlobal(QPoint(300, 200)));
            menu->close();
        });
        QTest::mousePress(button, Qt::LeftButton);
        EXPECT_EQ(shown, 1);
        EXPECT_EQ(button->underMouse(), stays);
        QTest::mouseRelease(button, Qt::LeftButton);
    }
}
