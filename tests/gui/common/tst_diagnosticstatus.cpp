#include "gui/common/diagnosticstatusdockwidget.h"
#include "gui/common/docktitlebar.h"
#include "gui/common/flagcommands.h"
#include "gui/common/statustext.h"
#include "store/datastore.h"
#include "support/gestures.h"
#include "support/instrument.h"

#include <QLabel>
#include <QMainWindow>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTextBrowser>
#include <QTextDocument>
#include <QUrl>

#include <gtest/gtest.h>

using Spectrometer::RecordFlag;

namespace {

using Flags = std::vector<std::shared_ptr<RecordFlag>>;

constexpr std::int64_t minute = 60 * ticksPerSecond;
const RecordTime now = recordTimeFromTicks(18151 * ticksPerDay);

std::shared_ptr<Record> recordWith(const Flags &flags, std::int64_t ticksAgo = 0)
{
    auto record = std::make_shared<Record>();
    record->endTime = now - Ticks(ticksAgo);
    record->beginTime = record->endTime - Ticks(ticksPerSecond);
    record->flags = flags;
    return record;
}

QString plainText(const QString &html)
{
    QTextDocument document;
    document.setHtml(html);
    return document.toPlainText().simplified();
}

const Flags three{testFlag("b <i>", RecordFlag::Warning), testFlag("a", RecordFlag::Failure),
                  testFlag("c", RecordFlag::Note)};

struct Dock {
    std::shared_ptr<UiInfo> ui = std::make_shared<UiInfo>();
    QMainWindow window;
    DiagnosticStatusDockWidget *dock = new DiagnosticStatusDockWidget(ui, &window);
    QTextBrowser *browser = dock->findChild<QTextBrowser *>();

    Dock()
    {
        window.addDockWidget(Qt::LeftDockWidgetArea, dock);
        window.resize(400, 300);
        window.show();
        settle();
    }
    QString summary() const { return plainText(dock->findChild<DockTitleBar *>()->news()); }
    QString text() const { return browser->toPlainText().simplified(); }
};

} // namespace

TEST(FlagSubjects, AreWhatNamesAndNumbersThereAre)
{
    const struct {
        QVariant vars, elms;
        QStringList variables;
        QList<int> electrometers;
    } table[] = {
        {QVariantList{"flow", "rh"}, QVariantList{3, 4}, {"flow", "rh"}, {3, 4}},
        {"flow", 3, {"flow"}, {}},
        {QVariantList{1, "<b>"}, QVariantList{"x", -1, 2.5, "7"}, {"1", "<b>"}, {7}},
        {QVariantMap{{"a", 1}}, QVariantMap{{"a", 1}}, {}, {}},
        {{}, QVariantList{1e300, QVariantList{1}}, {}, {}},
    };
    for (const auto &row : table) {
        const auto flag = testFlag("m", RecordFlag::Note, {{"vars", row.vars}, {"elms", row.elms}});
        const FlagSubjects subjects = subjectsOf(*flag);
        EXPECT_EQ(subjects.variables, row.variables);
        EXPECT_EQ(subjects.electrometers, row.electrometers);
    }
}

TEST(StatusText, Age)
{
    const struct {
        std::int64_t seconds;
        const char *text;
    } table[] = {{-5, "0 minutes ago"},    {59, "0 minutes ago"},    {60, "1 minute ago"},
                 {119, "1 minute ago"},    {120, "2 minutes ago"},   {3599, "59 minutes ago"},
                 {3600, "1:00 hours ago"}, {7505, "2:05 hours ago"}, {86399, "23:59 hours ago"}};
    for (const auto &row : table)
        EXPECT_EQ(StatusText::age(Ticks(row.seconds * ticksPerSecond)), row.text);
}

TEST(StatusText, RowsByCountAndByTime)
{
    FlagCounts counts;
    EXPECT_EQ(StatusText::byCount(counts).summary, "<font color='black'>ok</font>");
    EXPECT_EQ(StatusText::byCount(counts).table, "");
    counts.add(*recordWith({three[0], three[2]}, 20 * minute));
    counts.add(*recordWith({three[1], three[2]}, 3 * minute));
    counts.add(*recordWith({testFlag("old", RecordFlag::Failure)}, 24 * 60 * minute + 1));

    const auto byCount = StatusText::byCount(counts);
    EXPECT_EQ(plainText(byCount.table), "c 2 records [fail] a 1 records [warn] b <i> 1 records [fail] old 1 records");
    EXPECT_EQ(byCount.summary, "<font color='darkred'><b>2 failures</b></font> <font color='darkred'>1 warning</font> "
                               "<font color='black'>1 notice</font>");

    const auto byTime = StatusText::byTime(counts, now);
    EXPECT_EQ(plainText(byTime.table), "[fail] a 3 minutes ago c 3 minutes ago [warn] b <i> 20 minutes ago");
    EXPECT_EQ(byTime.table.count("class='dimmed'"), 1);
    EXPECT_EQ(plainText(byTime.summary), "1 failure 1 notice");
    counts.forgetBefore(now - Ticks(ticksPerDay));
    EXPECT_EQ(counts.statuses().size(), 3);
}

TEST(DiagnosticStatus, ARowHighlightsWhatItsFlagIsAbout)
{
    Dock d;
    const auto flow =
        testFlag("flow", RecordFlag::Failure, {{"vars", QVariantList{"flow"}}, {"elms", QVariantList{2}}});
    flow->text = "{message: flow}";
    d.dock->addRecord(recordWith({flow}));
    settle();
    EXPECT_EQ(d.text(), "[fail] flow 1 records");
    EXPECT_EQ(d.summary(), "1 failure");
    const QString key = FlagCounts::keyOf(flow.get());
    d.dock->flagBrowserClicked(QUrl(key + "/flag"));
    EXPECT_EQ(d.ui->highlightedVariables(), QStringList("flow"));
    EXPECT_EQ(d.ui->highlightedElectrometers(), QList<int>{2});
    for (const QString &address :
         {QString(), key, key + "/other", key + "/flag/x", QString("12/flag"), QString("x/flag")}) {
        d.dock->flagBrowserClicked(QUrl(address));
        EXPECT_EQ(d.ui->highlightedVariables().size(), 1) << "nothing happens";
    }
    d.dock->clear();
    EXPECT_EQ(d.text(), "");
    EXPECT_EQ(d.summary(), "ok");
    d.dock->flagBrowserClicked(QUrl(key + "/flag")); // a flag that is gone
}

TEST(DiagnosticStatus, TheSummaryIsWholeInANarrowDock)
{
    Dock d;
    d.dock->addRecord(recordWith({three[0], three[1], three[2], testFlag("d", RecordFlag::Note)}));
    const auto labels = d.dock->findChild<DockTitleBar *>()->findChildren<QLabel *>();
    const auto *title = labels[0], *news = labels[1];
    if (title->text() != "Diagnostic status")
        std::swap(title, news);
    for (const auto &[width, isBeside] : {std::pair(800, true), {300, false}, {800, true}}) {
        d.window.resize(width, 300);
        settle();
        EXPECT_GE(news->width(), news->sizeHint().width()) << width;
        EXPECT_EQ(news->x() > title->x(), isBeside) << width;
    }
}

TEST(DiagnosticStatus, ManyRecordsAreDrawnOnceAndManyFlagsCut)
{
    Dock d;
    Datastore store;
    store.setLimitRecords(false);
    for (int i = 0; i < 3000; ++i)
        store.insertRecord(store.lowerBound(now),
                           recordWith({testFlag(QString::number(i), RecordFlag::Note), three[1]}, 3000 - i));
    QSignalSpy drawn(d.browser->document(), &QTextDocument::contentsChanged);
    d.dock->addRecords(store);
    EXPECT_EQ(drawn.count(), 0);
    settle();
    EXPECT_EQ(drawn.count(), 1);
    EXPECT_TRUE(d.text().startsWith("[fail] a 3000 records"));
    EXPECT_TRUE(d.text().endsWith("and 2001 more"));
    EXPECT_EQ(d.summary(), "1 failure 3000 notices");

    // A change leaves the place that the user has scrolled to, and no change leaves the text.
    d.browser->verticalScrollBar()->setValue(500);
    d.dock->addRecord(recordWith({three[1]}, -1));
    settle();
    EXPECT_EQ(drawn.count(), 2);
    EXPECT_EQ(d.browser->verticalScrollBar()->value(), 500);
    d.dock->setMode(DiagnosticStatusDockWidget::ByCount);
    d.dock->setMode(7);
    settle();
    EXPECT_EQ(drawn.count(), 2);

    d.dock->close();
    d.dock->addRecord(recordWith({three[0]}));
    settle();
    EXPECT_EQ(drawn.count(), 2) << "unseen";
    d.dock->show();
    settle();
}
