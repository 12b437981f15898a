#pragma once

#include "support/failingcalls.h"

#include <QByteArray>
#include <QStringList>

#include <gtest/gtest.h>

#include <functional>

/// Reading is sound: a file that can't be read costs its rows, and the run goes on.
class FailingWriteCalls : public FailingCalls {
public:
    using FailingCalls::FailingCalls;

    ssize_t pread(int descriptor, char *bytes, std::size_t size, off_t from) override
    {
        return FileCalls::pread(descriptor, bytes, size, from);
    }
};

/// Runs a command again and again, with another of the calls by which it writes failing each time, and at last with
/// none. `check` sees each exit status and what was told. The result names each call that failed with the statuses it
/// led to, in order of the alphabet.
inline QStringList endsOfFailingRuns(const std::function<int()> &run,
                                     const std::function<void(int status, const QByteArray &words)> &check)
{
    QStringList ends;
    for (int nth = 1;; ++nth) {
        testing::internal::CaptureStderr();
        int status = -1;
        const char *failed = nullptr;
        {
            const FailingWriteCalls calls(nth);
            status = run();
            failed = calls.failed();
        }
        const QByteArray words = QByteArray::fromStdString(testing::internal::GetCapturedStderr());
        SCOPED_TRACE(QString("%1 (call %2): %3").arg(failed ? failed : "nothing").arg(nth).arg(status).toStdString() +
                     "\n" + words.toStdString());
        check(status, words);
        if (!failed) {
            EXPECT_EQ(status, 0);
            break;
        }
        ends << QString("%1 %2").arg(failed).arg(status);
    }
    ends.removeDuplicates();
    ends.sort();
    return ends;
}
