#pragma once

#include "support/files.h"

#include <QProcess>
#include <QTemporaryDir>

/// A folder of small day files, and the program run on it.
class DayFolder : public ::testing::Test {
protected:
    struct Ended {
        int code = -1;
        QByteArray output;
        QByteArray errors;
    };

    QString path(const QString &name = QString()) const { return m_folder.filePath(name); }

    void write(const QString &name, const QByteArray &content) { writeFile(path(name), content); }
    QByteArray contentOf(const QString &name) const { return ::contentOf(path(name)); }
    QStringList names(const QString &folder) const { return QDir(path(folder)).entryList(QDir::Files); }

    /// Runs the program with "{}" in an argument standing for the folder.
    Ended run(const QStringList &arguments) { return run(QStringLiteral(BATCH_PROGRAM), arguments); }
    Ended run(const QString &program, QStringList arguments)
    {
        arguments.replaceInStrings("{}", path());
        QProcess process;
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished(120000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }
    /// The same through a line of shell, in which "$@" is the program and its arguments.
    Ended runInShell(const QString &line, const QStringList &arguments)
    {
        return run("sh", QStringList{"-c", line, "sh", QStringLiteral(BATCH_PROGRAM)} + arguments);
    }

    /// Runs the commands of a file in "endings". A line is an exit status, a command line, and a part of what it tells,
    /// with tabs between them.
    void expectEndings(const QString &file)
    {
        const QByteArrayList lines = ::contentOf(ENDINGS "/" + file).split('\n');
        for (const QByteArray &line : lines.mid(0, lines.size() - 1)) {
            const QByteArrayList parts = line.split('\t');
            const Ended ended = run(QProcess::splitCommand(QString::fromUtf8(parts.value(1))));
            EXPECT_EQ(ended.code, parts[0].toInt()) << line.constData() << '\n' << ended.errors.constData();
            EXPECT_TRUE(ended.errors.contains(parts.value(2))) << line.constData() << '\n' << ended.errors.constData();
            EXPECT_TRUE(ended.code != 2 || ended.output.isEmpty()) << ended.output.constData();
        }
        EXPECT_GT(lines.size(), 10);
    }

    /// Records of two modes and a day at +02:00, their spectra, one of which is empty, and a flag that comes twice.
    void writeDay(const QString &folder, const QString &variant = "block")
    {
        const QString stem = QString("%1/20190912-%2").arg(folder, variant);
        write(stem + ".records",
              recordsHeader() +
                  "2019-09-12 00:30:00.000000+02:00\t2019-09-12 00:31:00.000000+02:00\tions\t1\t2\t0.1\t"
                  "0.2\t3\t4\t5\t6\t20.5\t\n"
                  "# flag ab: {type: warning, message: \"Too humid\"}\n"
                  "2019-09-12 00:31:00.000000+02:00\t2019-09-12 00:32:00.000000+02:00\toffset\t1\t2\t0.1\t"
                  "0.2\t3\t4\t5\t6\t20.5\t!ab!ab\n");
        write(stem + "-ions.spectra",
              spectraHeader() +
                  "2019-09-12 00:30:00.000000+02:00\t2019-09-12 00:31:00.000000+02:00\tions\t1\t2\t0.5\t3\n"
                  "2019-09-12 00:33:00.000000+02:00\t2019-09-12 00:34:00.000000+02:00\tions\t\t\t\t\n");
    }
    static QByteArray recordsHeader()
    {
        return "# Quilvane records\n# opmodes: [ions, offset]\n# total electrometers: 2\n"
               "# electrometer groups: {neg: [0, 0], pos: [1, 1]}\n# electrometer names: [e0, e1]\n"
               "# parameters:\n# - {name: temp, humanname: Temperature, unit: C}\n# \n"
               "begin_time\tend_time\topmode\tcur_0\tcur_1\tcurvar_0\tcurvar_1\trawcur_0\trawcur_1\tvolt_0\tvolt_1\t"
               "temp\tflags\n";
    }
    static QByteArray spectraHeader()
    {
        return "# Quilvane spectra\n# opmodes: [ions]\n# common opmode: ions\n# spectra:\n"
               "# - {name: ions neg, inverter_name: inv, comment: none, hash: aa11, xpoints: [1, 2], xunit: nm, yunit: "
               "1/cm^3, scale: radius}\n# \n"
               "begin_time\tend_time\topmode\tnd_avg(ions neg, 1)\tnd_avg(ions neg, 2)\tnd_std(ions neg, 1)\t"
               "nd_std(ions neg, 2)\n";
    }

private:
    QTemporaryDir m_folder;
};
