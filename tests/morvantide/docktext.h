#pragma once

#include "log/logger.h"

#include <QDockWidget>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

/// The text of a window's log dock. Entries come with the event loop and in order, so that a mark tells that all are
/// there.
inline QString logDockText(const QWidget &window)
{
    static int marks = 0;
    const QString mark = QStringLiteral("mark %1.").arg(++marks);
    Log::Logger(QStringLiteral("test")).log(Log::Info, mark);
    const auto *edit = window.findChild<QDockWidget *>(QStringLiteral("logDock"))->findChild<QPlainTextEdit *>();
    EXPECT_TRUE(QTest::qWaitFor([&] { return edit->toPlainText().contains(mark); }, 30000));
    QString text = edit->toPlainText();
    return text.remove(QRegularExpression(QStringLiteral("\\[[0-9:.]+\\] mark [0-9]+\\.\\n?")));
}
