#pragma once

#include "support/files.h"

#include <QDateTime>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// A data folder that a test writes: day files of flags, which need nothing but times and modes.
struct DayFolder {
    static constexpr int recordsOfDay = 144;
    static constexpr int secondsOfDay = 86400;

    QTemporaryDir folder; ///< the data stand in a folder of it, for layouts are looked for beside that, too

    DayFolder() { QDir(folder.path()).mkdir("data"); }

    QString path() const { return filePath({}); }
    QString filePath(const QString &name) const { return QDir::cleanPath(folder.filePath("data/" + name)); }
    /// As many records of one second each: it takes a while to read them.
    void writeLong(int seconds)
    {
        QByteArray text = "# Quilvane flags\n# \nbegin_time\tend_time\topmode\tflags\n";
        QDateTime time(QDate(2019, 1, 1), QTime(0, 0), Qt::UTC);
        QByteArray next = time.toString("yyyy-MM-dd hh:mm:ss").toLatin1();
        for (int i = 0; i < seconds; ++i) {
            text += next + '\t';
            time = time.addSecs(1);
            next = time.toString("yyyy-MM-dd hh:mm:ss").toLatin1();
            text += next + "\tions\t\n";
        }
        write("20190101-block.flags", text);
    }
    /// A long day under that many dates from 1 January 2019 on: a read that is still under way when it is cancelled.
    void writeLongDays(int days)
    {
        writeLong(secondsOfDay);
        const QString name = filePath("%1-block.flags");
        for (int day = 1; day < days; ++day)
            ASSERT_TRUE(QFile::link(name.arg(20190101), name.arg(QDate(2019, 1, 1).addDays(day).toString("yyyyMMdd"))));
    }
    void write(const QString &name, const QByteArray &text) { writeFile(filePath(name), text); }
    /// A record each ten minutes of one day of 2019 (from 1), "ions" and "particles" in turn, two hours east of
    /// Greenwich.
    void writeDay(int dayOfYear, const QString &variant = QStringLiteral("block"))
    {
        const QDate date = QDate(2019, 1, 1).addDays(dayOfYear - 1);
        QByteArray text = "# Quilvane flags\n# \nbegin_time\tend_time\topmode\tflags\n";
        for (int i = 0; i < recordsOfDay; ++i) {
            const QDateTime begin(date, QTime(i / 6, i % 6 * 10));
            for (const QDateTime &time : {begin, begin.addSecs(600)})
                text += time.toString("yyyy-MM-dd hh:mm:ss").toLatin1() + ".000000+02:00\t";
            text += i % 2 ? "particles\t\n" : "ions\t\n";
        }
        write(date.toString("yyyyMMdd") + '-' + variant + ".flags", text);
    }
};
