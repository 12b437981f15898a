#include "gui/common/logbox.h"
#include "gui/common/logdock.h"
#include "gui/common/logtext.h"

#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <thread>

namespace {

const QDateTime noon(QDate(2019, 9, 12), QTime(12, 0));

Log::Entry entry(const QString &message, int level = Log::Info, const QString &source = "main",
                 const QDateTime &time = noon)
{
    Log::Entry made;
    made.level = level;
    made.source = source;
    made.message = message;
    made.time = time;
    return made;
}

struct ShownDock {
    LogDock dock;
    QPlainTextEdit *edit = dock.textEdit();
    QScrollBar *bar = edit->verticalScrollBar();

    ShownDock()
    {
        dock.resize(400, 200);
        dock.show();
    }
    void add(int count)
    {
        for (int i = 0; i < count; ++i)
            dock.addEntry(entry(QString("line %1").arg(i)));
        QTest::qWait(1);
    }
    QStringList lines()
    {
        QTest::qWait(1);
        return edit->toPlainText().split('\n');
    }
    bool isAtEnd() const { return bar->value() == bar->maximum(); }
};

} // namespace

TEST(LogText, ShowsWhatConcernsTheUser)
{
    const struct {
        int level;
        const char *source;
        bool shown;
    } table[] = {{Log::Debug, "main", false},
                 {Log::Info, "main", true},
                 {Log::Info, "instrument.dev.x", false},
                 {Log::Notice, "instrument.dev.x", true},
                 {Log::Info, "instrument.device", true},
                 {Log::Emergency, "qt.default:x:42", false},
                 {Log::Info, "qtish", true},
                 {Log::Debug, "instrument.dev.x", false}};
    for (const auto &row : table)
        EXPECT_EQ(LogText::isShown(entry("x", row.level, row.source)), row.shown) << row.source << row.level;
}

TEST(LogText, Html)
{
    EXPECT_EQ(LogText::html(entry("File <a> & \"b\"\nnext"), false),
              "<pre class='log-info'><b>[12:00:00.000]</b> File &lt;a&gt; &amp; &quot;b&quot;\n" + QString(15, ' ') +
                  "next</pre>");
    EXPECT_EQ(LogText::html(entry("%1 %3", Log::Warning), true),
              "<pre class='log-warning'><b>[2019-09-12 12:00:00.000]</b> %1 %3</pre>");
    EXPECT_EQ(LogText::html(entry("bad", Log::Error), false),
              "<pre class='log-error'><b>[12:00:00.000 error]</b> bad</pre>");
    EXPECT_LT(LogText::html(entry(QString(16 << 20, 'x')), false).size(), 30000) << "a megabyte line isn't laid out";
}

TEST(LogDock, PrintsADateOnce)
{
    ShownDock shown;
    shown.dock.addEntry(entry("one", Log::Info, "main", noon));
    shown.dock.addEntry(entry("two\nthree", Log::Info, "main", noon.addSecs(1)));
    shown.dock.addEntry(entry("qt", Log::Info, "qt.default:x:1", noon.addDays(1)));
    shown.dock.addEntry(entry("four", Log::Critical, "main", noon.addDays(1)));
    shown.dock.addEntry(entry("five", Log::Info, "main", noon.addDays(1)));
    EXPECT_EQ(shown.lines(),
              (QStringList{"[2019-09-12 12:00:00.000] one", "[12:00:01.000] two", QString(15, ' ') + "three",
                           "[2019-09-13 12:00:00.000 critical] four", "[12:00:00.000] five"}));
}

TEST(LogDock, FoldsEqualEntriesInARow)
{
    ShownDock shown;
    for (const char *message : {"bad\nrow", "bad\nrow", "good", "bad\nrow"})
        shown.dock.addEntry(entry(message));
    const QString head("[12:00:00.000] ");
    const QString row = QString(15, ' ') + "row";
    const QStringList before{"[2019-09-12 12:00:00.000] bad", row + " (2 times)", head + "good", head + "bad"};
    EXPECT_EQ(shown.lines(), before + QStringList{row});
    for (int i = 0; i < 8; ++i)
        shown.dock.addEntry(entry("bad\nrow"));
    EXPECT_EQ(shown.lines(), before + QStringList{row + " (9 times)"}) << "what is shown counts on";
    shown.dock.addEntry(entry("bad\nrow"));
    shown.dock.addEntry(entry("bad\nrow", Log::Info, "other"));
    EXPECT_EQ(shown.lines(), before + (QStringList{row + " (10 times)", head + "bad", row})) << "another area";
}

TEST(LogDock, FilesOfOneReadAreOneLineAndAWarningComesOnce)
{
    const QString head("[12:00:00.000] ");
    const auto reading = [](int file) { return entry(QString("Reading %1").arg(file), Log::Info, "filereader"); };
    const auto complaint = entry("odd\nfile", Log::Warning, "filereader");
    for (const bool atOnce : {true, false}) { // or each with a turn of the event loop
        ShownDock shown;
        const auto add = [&](const Log::Entry &one) {
            shown.dock.addEntry(one);
            if (!atOnce)
                QTest::qWait(1);
        };
        add(entry("begin"));
        for (int file = 1; file <= 3; ++file)
            add(reading(file));
        const QStringList begin{"[2019-09-12 12:00:00.000] begin"};
        EXPECT_EQ(shown.lines(), begin + QStringList{head + "Reading 3 (the last of 3)"});
        for (int file = 4; file <= 100; ++file) {
            add(complaint);
            add(reading(file));
        }
        const QString rest = QString(15, ' ') + "file (97 times)";
        EXPECT_EQ(shown.lines(), begin + (QStringList{head + "Reading 3 (the last of 3)", head + "odd", rest,
                                                      head + "Reading 100 (the last of 97)"}));
        add(entry("end"));
        add(reading(1));
        add(complaint);
        add(complaint);
        EXPECT_EQ(shown.lines(),
                  begin + (QStringList{head + "Reading 3 (the last of 3)", head + "Reading 100 (the last of 97)",
                                       head + "end", head + "Reading 1", head + "odd",
                                       QString(15, ' ') + "file (99 times)"}));
    }
}

TEST(LogDock, WhatGoesAboveTheReaderDoesNotMoveTheText)
{
    ShownDock shown;
    shown.dock.addEntry(entry("odd", Log::Warning));
    shown.add(100);
    shown.bar->setValue(50);
    const auto firstSeen = [&shown] { return shown.lines().value(shown.bar->value()); };
    const QString before = firstSeen();
    shown.dock.addEntry(entry("odd", Log::Warning));
    EXPECT_EQ(firstSeen(), before);
    EXPECT_TRUE(shown.lines().last().endsWith("odd (2 times)"));
    shown.add(2000); // it has left the view
    shown.dock.addEntry(entry("odd", Log::Warning));
    EXPECT_TRUE(shown.lines().last().endsWith("odd (3 times)")) << qPrintable(shown.lines().last());
    EXPECT_EQ(shown.lines().size(), LogDock::greatestBlockCount);
}

TEST(LogDock, ABurstShowsItsLastThousandLinesAtOnce)
{
    ShownDock shown;
    int changes = 0;
    QObject::connect(shown.edit, &QPlainTextEdit::textChanged, [&changes] { ++changes; });
    for (int i = 0; i < 500000; ++i)
        shown.dock.addEntry(entry(i % 2 ? QString("complaint\n%1").arg(i) : QString("complaint %1").arg(i)));
    const QStringList lines = shown.lines();
    EXPECT_LE(changes, LogDock::greatestBlockCount) << "one for each entry would take a minute";
    EXPECT_LE(lines.size(), LogDock::greatestBlockCount);
    EXPECT_GT(lines.size(), LogDock::greatestBlockCount - 3);
    EXPECT_EQ(lines.last().trimmed(), "499999");
    EXPECT_TRUE(shown.isAtEnd());
}

TEST(LogDock, StaysWhereTheUserReadsForAMinute)
{
    ShownDock shown;
    shown.add(100);
    EXPECT_TRUE(shown.isAtEnd()) << "a view at the end follows";
    shown.bar->setValue(10);
    shown.add(1);
    EXPECT_EQ(shown.bar->value(), 10);
    shown.dock.tick(noon);
    shown.dock.tick(noon);
    shown.add(1);
    EXPECT_EQ(shown.bar->value(), 10) << "still for one round only";
    shown.dock.tick(noon);
    EXPECT_TRUE(shown.isAtEnd());
    for (int position : {30, 10}) { // the second is where the view stood before it went to the end
        shown.bar->setValue(position);
        shown.add(1);
        EXPECT_EQ(shown.bar->value(), position) << "read from just now";
        shown.dock.tick(noon);
        shown.dock.tick(noon);
        shown.dock.tick(noon);
        EXPECT_TRUE(shown.isAtEnd());
    }

    shown.bar->setValue(20);
    shown.dock.tick(noon);
    shown.bar->setValue(21);
    shown.dock.tick(noon);
    shown.dock.tick(noon);
    EXPECT_EQ(shown.bar->value(), 21) << "each move starts the minute anew";
}

TEST(LogDock, MarksNewHours)
{
    ShownDock shown;
    shown.dock.tick(noon.addSecs(60));
    shown.dock.tick(noon.addSecs(3599));
    shown.dock.addEntry(entry("before"));
    shown.dock.tick(noon.addSecs(3605));
    shown.dock.tick(noon.addSecs(3635));
    shown.dock.tick(noon.addSecs(2 * 3600));
    EXPECT_EQ(shown.lines(),
              (QStringList{"[2019-09-12 12:00:00.000] before", "[2019-09-12 13:00] ----", "[2019-09-12 14:00] ----"}));
}

TEST(LogBox, HandsOverTheLastThousandOfAnotherThread)
{
    LogBox box;
    QStringList got;
    QObject::connect(&box, &LogBox::newEntry, [&got](const Log::Entry &one) {
        EXPECT_EQ(QThread::currentThread(), qApp->thread());
        got.append(one.message);
    });
    std::thread writer([] {
        const Log::Logger logger("filereader");
        for (int i = 0; i < 3000; ++i) {
            logger.log(Log::Info, QString::number(i));
            logger.log(Log::Debug, "hidden");
        }
    });
    writer.join();
    QTest::qWait(1);
    ASSERT_EQ(got.size(), LogBox::capacity);
    EXPECT_EQ(got.first(), "2000");
    EXPECT_EQ(got.last(), "2999");

    Log::Logger("main").log(Log::Info, "later");
    QTest::qWait(1);
    EXPECT_EQ(got.size(), LogBox::capacity + 1) << "the box is empty again";
}

TEST(LogBox, CountsMoreRepeatsThanItHolds)
{
    LogBox box;
    QVector<qint64> counts;
    QObject::connect(&box, &LogBox::newEntry, [&counts](const Log::Entry &one) { counts.append(one.count); });
    for (int i = 0; i < 3000; ++i)
        Log::Logger("main").log(Log::Info, i < 2500 ? "same" : "else");
    QTest::qWait(1);
    qint64 sum = 0;
    for (const qint64 count : counts)
        sum += count;
    EXPECT_EQ(sum, 3000);
    EXPECT_LE(counts.size(), 4) << "one for each run, and one more where midnight divides it";
}

TEST(LogBox, MayGoWhileOthersLog)
{
    std::atomic<bool> stop{false};
    std::thread writer([&stop] {
        const Log::Logger logger("filereader");
        while (!stop) {
            logger.log(Log::Info, "x");
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
    });
    for (int i = 0; i < 50; ++i) {
        LogBox box;
        QTest::qWait(1);
    }
    stop = true;
    writer.join();
    QTest::qWait(1);
}
