#include "util/workteam.h"

#include "support/shortmemory.h"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>

TEST(WorkTeam, DoesEachItemOnceBeforeItReturns)
{
    for (const int workers : {0, 1, 2, 5}) {
        WorkTeam team(workers);
        for (const std::size_t count : {0, 1, 3, 1000, 1, 1000}) {
            std::vector<int> done(count, 0);
            team.run(count, [&](std::size_t i) { ++done[i]; });
            EXPECT_EQ(std::count(done.begin(), done.end(), 1), std::ptrdiff_t(count)) << workers;
        }
    }
}

TEST(WorkTeam, AllWorkersTakePart)
{
    WorkTeam team(3);
    ASSERT_EQ(team.size(), 3);
    std::atomic<int> waiting{0};
    team.run(3, [&](std::size_t) {
        ++waiting;
        while (waiting < 3) // each needs the two others
            std::this_thread::yield();
    });
}

TEST(WorkTeam, AnExceptionComesToTheCallerAndEndsTheRound)
{
    WorkTeam team(4);
    for (int round = 0; round < 50; ++round) {
        std::atomic<int> done{0};
        EXPECT_THROW(team.run(100'000,
                              [&](std::size_t i) {
                                  ++done;
                                  if (i % 100 == 7)
                                      throw std::runtime_error("no");
                              }),
                     std::runtime_error);
        EXPECT_LT(done, 100'000);
        team.run(10, [&](std::size_t) { ++done; });
    }
}

TEST(WorkTeam, IsSmallerWhereThereIsNoMemoryForAThread)
{
    if (!ShortMemory::isPossible)
        GTEST_SKIP() << "the sanitizer has an allocator of its own";
    for (int nth = 1; nth < 12; ++nth) {
        ShortMemory::letFail(false, nth, 3);
        WorkTeam team(4);
        ShortMemory::failures = 0;
        std::atomic<int> done{0};
        team.run(10, [&](std::size_t) { ++done; });
        EXPECT_EQ(done, 10) << nth;
    }
}
