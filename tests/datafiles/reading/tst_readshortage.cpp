#include "datafiles/reading/dayfiles.h"
#include "datafiles/reading/dump.h"
#include "datafiles/reading/reading.h"
#include "support/shortmemory.h"

#include <chrono>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Reads a folder by three threads, in a child process that runs out of memory for a while.
class ReadShortage : public DayFiles<Reading> {
protected:
    void SetUp() override
    {
        if (!ShortMemory::isPossible)
            GTEST_SKIP() << "the sanitizer has an allocator of its own";
        ShortMemory::isMarked = true;
        for (int i = 1; i < 6; ++i)
            write(QString::number(i) + ".records", dayFile());
        threads = 1;
        read();
        m_expected = Dump(*reader).text() + complaints().join('\n');
        threads = 3;
        chunkBytes = 3000;
        parsed = [] {
            if (ShortMemory::isMarked) // the others are to have most of the work
                std::this_thread::sleep_for(std::chrono::microseconds(200));
        };
    }
    void TearDown() override { ShortMemory::isMarked = false; }

    enum Outcome { same, told, wrong, crashed };
    /// Of a read whose nth allocation fails, and some behind it.
    Outcome outcomeWithout(bool ofReader, int nth, int count)
    {
        const pid_t child = fork();
        if (child == 0) {
            alarm(60);
            started = [=](FileReaderTask &) { ShortMemory::letFail(ofReader, nth, count); };
            read();
            ShortMemory::failures = 0;
            const QString complaints = this->complaints().join('\n');
            const bool isSame = Dump(*reader).text() + complaints == m_expected;
            _exit(isSame ? same : complaints.contains("Not enough memory") ? told : wrong);
        }
        int status = -1;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? Outcome(WEXITSTATUS(status)) : crashed;
    }

private:
    QString m_expected;
};

INSTANTIATE_TEST_SUITE_P(Seeds, ReadShortage, ::testing::ValuesIn(seeds(1)));

TEST_P(ReadShortage, InAParsingThreadChangesNothing)
{
    for (const int count : {1, 100000})
        for (int nth = 1; nth <= 200; ++nth)
            ASSERT_EQ(outcomeWithout(false, nth, count), same) << nth << " and " << count;
}

TEST_P(ReadShortage, AtTheStartOfThreadsIsTold)
{
    for (const int count : {1, 3})
        for (int nth = 1; nth <= 80; ++nth)
            ASSERT_LE(outcomeWithout(true, nth, count), told) << nth << " and " << count;
}

} // namespace
