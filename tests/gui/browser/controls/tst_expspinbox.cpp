#include "gui/browser/controls/expspinbox.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

class ExpSpinBoxTest : public ::testing::Test {
protected:
    /// Types over the whole text.
    void type(const char *text)
    {
        edit()->selectAll();
        if (*text)
            QTest::keyClicks(edit(), text);
        else
            QTest::keyClick(edit(), Qt::Key_Delete);
    }
    QLineEdit *edit() { return box.findChild<QLineEdit *>(); }
    std::string text() { return edit()->text().toStdString(); }

    ExpSpinBox box;
};

TEST_F(ExpSpinBoxTest, TenStepsMakeADecadeExactly)
{
    for (int i = 1; i <= 300; ++i) {
        QTest::keyClick(&box, Qt::Key_Up);
        if (i <= 220 && i % 10 == 0) { // as far as powers of ten are exact
            EXPECT_EQ(box.value(), std::pow(10.0, i / 10)) << i;
        }
        EXPECT_NEAR(std::log10(box.value()), i / 10.0, 1e-12) << i;
    }
    box.setValue(3);
    for (int i = 0; i < 10; ++i)
        box.stepBy(-1);
    EXPECT_DOUBLE_EQ(box.value(), 0.3);
}

TEST_F(ExpSpinBoxTest, StepsEndAtTheRange)
{
    box.setRange(0.5, 20);
    box.setValue(18);
    box.stepBy(1);
    EXPECT_EQ(box.value(), 18);
    box.setRange(0.5, 10);
    EXPECT_EQ(box.value(), 10) << "a new top holds at once";
    box.setRange(11, 12);
    EXPECT_EQ(box.value(), 11);

    ExpSpinBox open;
    for (int i = 0; i < 8000; ++i)
        open.stepBy(1);
    EXPECT_TRUE(std::isfinite(open.value()));
    for (int i = 0; i < 16000; ++i)
        open.stepBy(-1);
    EXPECT_GT(open.value(), 0);
}

TEST_F(ExpSpinBoxTest, ATextIsTakenAsWritten)
{
    QSignalSpy changed(&box, &ExpSpinBox::valueChanged);
    type("125.89");
    EXPECT_EQ(box.value(), 125.89);
    EXPECT_EQ(text(), "125.89");
    QTest::keyClick(edit(), Qt::Key_Return);
    EXPECT_EQ(box.value(), 125.89);
    for (const char *broken : {"abc", "1e", "--3", "1,5"}) {
        type("7");
        type(broken);
        EXPECT_NE(text(), "") << broken;
        QTest::keyClick(edit(), Qt::Key_Return);
        EXPECT_FALSE(std::isnan(box.value())) << broken;
    }
    EXPECT_GT(changed.size(), 0);
}

TEST_F(ExpSpinBoxTest, LeavingTheBoxKeepsTheValueBehindARoundedText)
{
    box.setValue(125.89);
    EXPECT_EQ(text(), "1.3e+02");
    QSignalSpy changed(&box, &ExpSpinBox::valueChanged);
    QFocusEvent out(QEvent::FocusOut);
    QApplication::sendEvent(&box, &out);
    EXPECT_EQ(box.value(), 125.89);
    type("12e"); // intermediate: the value of "12" stands, its text comes back on Return
    QTest::keyClick(edit(), Qt::Key_Return);
    EXPECT_EQ(text(), "12");
    EXPECT_EQ(box.value(), 12);
}

TEST_F(ExpSpinBoxTest, AnEmptyTextBecomesOne)
{
    box.setValue(40);
    type("");
    EXPECT_EQ(box.value(), 40);
    QTest::keyClick(edit(), Qt::Key_Return);
    EXPECT_EQ(text(), "1.0");
    EXPECT_EQ(box.value(), 1.0);
}

TEST_F(ExpSpinBoxTest, InfinityStaysUntilANumberIsTyped)
{
    const double infinity = std::numeric_limits<double>::infinity();
    box.setRange(0, 1e300);
    box.setValue(infinity);
    EXPECT_EQ(text(), "∞");
    QTest::keyClick(&box, Qt::Key_Up);
    QTest::keyClick(edit(), Qt::Key_Return);
    EXPECT_EQ(box.value(), infinity);
    EXPECT_EQ(text(), "∞");
    type("25");
    EXPECT_EQ(box.value(), 25);
}

TEST_F(ExpSpinBoxTest, SignalsOnlyChanges)
{
    QSignalSpy changed(&box, &ExpSpinBox::valueChanged);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    box.setValue(1.0);
    box.setValue(nan);
    box.setValue(nan);
    box.setValue(2);
    EXPECT_EQ(changed.size(), 2);
    EXPECT_EQ(text(), "2");
}

} // namespace
