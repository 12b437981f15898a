#include "gui/common/recordform.h"
#include "gui/common/recordtext.h"
#include "support/instrument.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QTextBrowser>
#include <QTextDocument>
#include <QUrl>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using Spectrometer::RecordFlag;

namespace {

constexpr std::int64_t day20190912 = 18151 * ticksPerDay;

/// Ends at 23:59:59.5 UTC.
std::shared_ptr<Record> record()
{
    auto made = std::make_shared<Record>();
    made->beginTime = recordTimeFromTicks(day20190912 + ticksPerDay - 60 * ticksPerSecond);
    made->endTime = recordTimeFromTicks(day20190912 + ticksPerDay - ticksPerSecond / 2);
    made->opmode = 0;
    return made;
}

struct Form {
    std::shared_ptr<UiInfo> ui = std::make_shared<UiInfo>();
    RecordForm form{ui};
    QTextBrowser *notes = form.findChild<QTextBrowser *>("notesBrowser");

    Form() { setModes({"ions"}); }
    void setModes(const QStringList &names)
    {
        ui->setData(testMetadata(names), {});
        ui->publish();
    }
    QString text(const QString &name) const { return form.findChild<QLabel *>(name)->text(); }
    QStringList texts() const
    {
        return {text("dateLabel"), text("beginTimeLabel"), text("endTimeLabel"), text("opmodeLabel")};
    }
};

} // namespace

TEST(RecordText, Zone)
{
    const struct {
        std::int64_t offset;
        const char *text;
    } table[] = {{0, ""},    {7200, "+2"},  {-12600, "-3:30"}, {20700, "+5:45"}, {-300, "-0:05"},
                 {30, "+0"}, {-3600, "-1"}, {3659, "+1"},      {43200, "+12"}};
    for (const auto &row : table)
        EXPECT_EQ(RecordText::zone(row.offset), row.text) << row.offset;
}

TEST(RecordText, Times)
{
    const struct {
        std::int64_t beginOffset, endOffset;
        bool ended;
        QStringList texts;
    } table[] = {
        {0, 0, true, {"2019-09-12 (UTC)", "23:59:00.000", "23:59:59.500"}},
        {7200, 7200, true, {"2019-09-13 (UTC+2)", "01:59:00.000", "01:59:59.500"}},
        {0, 60, true, {"2019-09-13 (UTC)", "23:59:00.000", "00:00:59.500"}},
        {0, 0, false, {"2019-09-12 (UTC)", "n/a", "23:59:00.000"}},
        {-12600, 0, false, {"2019-09-12 (UTC-3:30)", "n/a", "20:29:00.000"}},
    };
    for (const auto &row : table) {
        auto one = record();
        one->beginUtcOffset = row.beginOffset;
        one->endUtcOffset = row.endOffset;
        if (!row.ended)
            one->endTime = {};
        const RecordText::Times times = RecordText::times(*one);
        EXPECT_EQ((QStringList{times.date, times.begin, times.end}), row.texts) << row.texts.first().toStdString();
    }
}

TEST(RecordText, Notes)
{
    auto one = record();
    EXPECT_EQ(RecordText::notes(*one), QString());
    one->spectraProvisional = true;
    EXPECT_TRUE(RecordText::notes(*one).contains("Distribution estimates are provisional"));
    one->provisional = true;
    one->flags = {testFlag("low %1", RecordFlag::Note), testFlag("<b>", RecordFlag::Failure),
                  testFlag("x", RecordFlag::Warning)};
    EXPECT_EQ(RecordText::notes(*one),
              "<html><body><div class=\"info\">Measurement results are provisional</div>"
              "<div><a href='0' class='info'> low %1</div><div><a href='1' class='failure'> &lt;b&gt;</div>"
              "<div><a href='2' class='warning'> x</div></body></html>");
    one->flags.assign(50000, testFlag("x", RecordFlag::Note));
    EXPECT_EQ(RecordText::notes(*one).count("href"), 1000);
    EXPECT_TRUE(RecordText::notes(*one).contains("and 49000 more"));
}

TEST(RecordForm, ShowsARecordAndNone)
{
    Form f;
    EXPECT_EQ(f.texts(), (QStringList{"-", "-", "-", "-"}));
    auto one = record();
    one->provisional = true;
    f.form.showRecord(one);
    EXPECT_EQ(f.texts(), (QStringList{"2019-09-12 (UTC)", "23:59:00.000", "23:59:59.500", "ions"}));
    EXPECT_EQ(f.notes->toPlainText(), "Measurement results are provisional");
    one->beginUtcOffset = 12 * 3600 + 45 * 60;
    f.form.showRecord(one);
    const auto *date = f.form.findChild<QLabel *>("dateLabel");
    EXPECT_GE(date->minimumWidth(), date->fontMetrics().horizontalAdvance("2019-09-13 (UTC+12:45)"));
    EXPECT_EQ(date->toolTip(), date->text());
    auto *comment = f.form.findChild<QLineEdit *>();
    EXPECT_EQ(comment->text(), "n/a");
    EXPECT_FALSE(comment->isEnabled());

    f.setModes({"<b>particles</b>" + QString(500, 'x')});
    EXPECT_TRUE(f.text("opmodeLabel").startsWith("<b>particles"));
    EXPECT_EQ(f.form.findChild<QLabel *>("opmodeLabel")->textFormat(), Qt::PlainText);
    EXPECT_LT(f.form.minimumSizeHint().width(), 500) << "a name out of a file doesn't push the dock open";

    for (const char *name : {"ions & particles", "a<b>"}) {
        f.setModes({name});
        const QString tip = f.form.findChild<QLabel *>("opmodeLabel")->toolTip();
        QTextDocument shown;
        Qt::mightBeRichText(tip) ? shown.setHtml(tip) : shown.setPlainText(tip);
        EXPECT_EQ(shown.toPlainText(), name);
    }

    one->opmode = 7;
    f.form.showRecord(one);
    EXPECT_EQ(f.text("opmodeLabel"), "");
    f.form.showRecord(nullptr);
    EXPECT_EQ(f.texts(), (QStringList{"-", "-", "-", "-"}));
    EXPECT_EQ(f.notes->toPlainText(), "");
    EXPECT_EQ(comment->text(), "");
}

TEST(RecordForm, FlagsHighlightWhatTheyAreAbout)
{
    Form f;
    auto one = record();
    one->flags = {
        testFlag("none", RecordFlag::Note),
        testFlag("flow", RecordFlag::Failure, {{"vars", QVariantList{"flow", "rh"}}, {"elms", QVariantList{3, 4}}})};
    f.form.showRecord(one);
    f.form.show();

    // By keyboard: Tab takes the second link, Return follows it.
    f.notes->setFocus();
    QTest::keyClick(f.notes, Qt::Key_Tab);
    QTest::keyClick(f.notes, Qt::Key_Tab);
    QTest::keyClick(f.notes, Qt::Key_Return);
    EXPECT_EQ(f.ui->highlightedVariables(), (QStringList{"flow", "rh"}));
    EXPECT_EQ(f.ui->highlightedElectrometers(), (QList<int>{3, 4}));

    f.form.flagClicked(QUrl("0"));
    EXPECT_TRUE(f.ui->highlightedVariables().isEmpty());
    for (const char *address : {"2", "-1", "x", "1x", ""}) {
        f.form.flagClicked(QUrl("1"));
        f.form.flagClicked(QUrl(QString::fromLatin1(address)));
        EXPECT_TRUE(f.ui->highlightedVariables().isEmpty()) << address;
    }
}

TEST(RecordForm, TabPassesThroughTheFlagsBothWays)
{
    QWidget window;
    QVBoxLayout layout(&window);
    QLineEdit first, last;
    Form f;
    layout.addWidget(&first);
    layout.addWidget(&f.form);
    layout.addWidget(&last);
    QWidget::setTabOrder(&first, f.notes);
    QWidget::setTabOrder(f.notes, &last);
    window.show();
    QApplication::setActiveWindow(&window);
    const struct {
        Qt::Key key;
        QWidget *from, *to;
        QStringList order;
    } ways[] = {{Qt::Key_Tab, &first, &last, {"", "0", "1", "2"}},
                {Qt::Key_Backtab, &last, &first, {"", "2", "1", "0"}}};
    for (const int flags : {0, 1, 3}) {
        auto shown = record();
        for (int i = 0; i < flags; ++i)
            shown->flags.push_back(testFlag(QString::number(i), i));
        f.form.showRecord(shown);
        for (const auto &way : ways) {
            QStringList chosen;
            way.from->setFocus();
            for (int i = 0; i < 10 && QApplication::focusWidget() != way.to; ++i) {
                QTest::keyClick(QApplication::focusWidget(), way.key);
                if (f.notes->hasFocus())
                    chosen << f.notes->textCursor().selectedText();
            }
            EXPECT_EQ(QApplication::focusWidget(), way.to) << flags << " flags";
            QStringList expected = way.order;
            for (int i = flags; i < 3; ++i)
                expected.removeAll(QString::number(i));
            EXPECT_EQ(chosen, expected) << chosen.join(' ').toStdString();
        }
    }
}

TEST(RecordForm, PlotsAFlagFromItsContextMenu)
{
    Form f;
    auto one = record();
    one->provisional = true; // a line that is no link
    one->flags = {testFlag("first", RecordFlag::Note), testFlag("second", RecordFlag::Failure)};
    one->flags[0]->text = "{message: first}";
    one->flags[1]->text = "{message: second, type: failure}";
    f.form.showRecord(one);
    f.form.show();
    QSignalSpy requests(f.ui.get(), &UiInfo::requestFlagPlot);

    // Shows the menu as the event asks, and triggers "Plot flag" if it is there.
    const auto plotFrom = [&](QContextMenuEvent::Reason reason, const QPoint &at) {
        QWidget *const target = reason == QContextMenuEvent::Mouse ? f.notes->viewport() : f.notes;
        QContextMenuEvent event(reason, at, target->mapToGlobal(at));
        QCoreApplication::sendEvent(target, &event);
        const auto menus = f.notes->findChildren<QMenu *>();
        if (menus.isEmpty())
            return false;
        QAction *const action = menus.last()->actions().value(0);
        const bool isOffered = action && action->text() == "Plot flag";
        f.form.showRecord(nullptr); // what is clicked is what was shown
        if (isOffered)
            action->trigger();
        menus.last()->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        f.form.showRecord(one);
        return isOffered;
    };
    const auto placeOf = [&](const QString &text) {
        return f.notes->cursorRect(f.notes->document()->find(text)).center() - QPoint(3, 0);
    };
    EXPECT_TRUE(plotFrom(QContextMenuEvent::Mouse, placeOf("second")));
    EXPECT_TRUE(plotFrom(QContextMenuEvent::Mouse, placeOf("first")));
    EXPECT_FALSE(plotFrom(QContextMenuEvent::Mouse, placeOf("provisional")));
    EXPECT_FALSE(plotFrom(QContextMenuEvent::Keyboard, {}));
    f.notes->setFocus();
    QTest::keyClick(f.notes, Qt::Key_Tab);
    QTest::keyClick(f.notes, Qt::Key_Tab);
    EXPECT_TRUE(plotFrom(QContextMenuEvent::Keyboard, {}));
    QStringList texts;
    for (const auto &request : requests)
        texts << request.first().toString();
    EXPECT_EQ(texts, (QStringList{one->flags[1]->text, one->flags[0]->text, one->flags[1]->text}));
}
