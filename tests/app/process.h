#pragma once

#include "support/files.h"

#include <QProcess>
#include <QTemporaryDir>

/// What became of a process.
struct Ended {
    bool crashed = false;
    int code = -1; ///< exit status, or the signal of a crash
    QByteArray output;
    QByteArray errors;
};

/// A process in a folder of its own.
class Process {
public:
    void start(const QString &program, const QStringList &arguments)
    {
        if (m_process.workingDirectory().isEmpty())
            m_process.setWorkingDirectory(m_folder.path());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert("LANGUAGE", "C");
        m_process.setProcessEnvironment(environment);
        m_process.start(program, arguments);
        ASSERT_TRUE(m_process.waitForStarted(60000)) << qPrintable(m_process.errorString());
    }

    Ended wait()
    {
        if (!m_process.waitForFinished(60000) && m_process.state() != QProcess::NotRunning) {
            ADD_FAILURE() << "the process doesn't end";
            m_process.kill();
            m_process.waitForFinished();
        }
        return {m_process.exitStatus() == QProcess::CrashExit, m_process.exitCode(),
                m_output + m_process.readAllStandardOutput(), m_process.readAllStandardError()};
    }

    /// False if the process ends, or a minute goes by, before it says this.
    bool waitForOutput(const QByteArray &text)
    {
        while (!m_output.contains(text)) {
            if (!m_process.waitForReadyRead(60000))
                return false;
            m_output += m_process.readAllStandardOutput();
        }
        return true;
    }

    QProcess &process() { return m_process; }
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QStringList names(const QString &pattern) const
    {
        return QDir(m_folder.path()).entryList({pattern}, QDir::Files | QDir::Hidden | QDir::System);
    }

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    QByteArray m_output;
};
