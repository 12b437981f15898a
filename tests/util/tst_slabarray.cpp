#include "util/numeric.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

namespace {

namespace ublas = boost::numeric::ublas;

TEST(SlabArray, ServesUblasVectorsAndBands)
{
    RealVector a(3);
    a[0] = 1, a[1] = 2, a[2] = 3;
    RealVector b = a;
    b *= 2.0;
    EXPECT_DOUBLE_EQ(ublas::inner_prod(a, b), 28.0);
    a.resize(5, true);
    EXPECT_EQ(a[2], 3.0);
    EXPECT_EQ(a.size(), 5u);
    RealVector moved = std::move(b);
    EXPECT_EQ(moved[2], 6.0);

    BandMatrix band(4, 4, 1, 1);
    band.clear();
    band(1, 2) = 7.0;
    const BandMatrix &view = band;
    EXPECT_EQ(view(1, 2), 7.0);
    EXPECT_EQ(view(0, 3), 0.0);
    BandMatrix diagonal(4, 4, 0, 0);
    EXPECT_EQ(diagonal.data().size(), 4u);
}

TEST(SlabArray, PiecesLargerThanASlabAndEmptyOnes)
{
    RealVector large(1 << 20, 1.5);
    EXPECT_EQ(large[(1 << 20) - 1], 1.5);
    RealVector empty(0);
    EXPECT_EQ(empty.size(), 0u);
    EXPECT_THROW(Slab::allocate(std::size_t(-8)), std::bad_alloc);
}

#ifndef __SANITIZE_ADDRESS__
TEST(SlabArray, WhatIsHeldForAMomentLeavesNoHoles)
{
    std::thread([] { // with a slab of its own
        std::vector<SlabArray> kept;
        for (int i = 0; i < 1000; ++i) {
            const SlabArray values(28), deviations(28), points(29);
            const std::vector<SlabArray> ofViews(20, values);
            kept.emplace_back(16, double(i));
        }
        EXPECT_LT(kept.back().begin() - kept.front().begin(), 1000 * 16 + 1000);
        for (int i = 0; i < 1000; ++i)
            EXPECT_EQ(kept[std::size_t(i)][15], i);
    })
        .join();
}
#endif

TEST(SlabArray, PiecesAreReleasedOnOtherThreads)
{
    std::vector<RealVector> made;
    std::thread maker([&made] {
        for (int i = 0; i < 20000; ++i)
            made.emplace_back(40, double(i));
    });
    maker.join();
    for (int i = 0; i < 20000; ++i)
        ASSERT_EQ(made[std::size_t(i)][39], double(i));
    std::thread([taken = std::move(made)]() mutable { taken.clear(); }).join();

    auto shared = std::allocate_shared<std::array<double, 10>>(SlabAllocator<double>());
    (*shared)[9] = 1.0;
    EXPECT_EQ((*shared)[9], 1.0);
}

} // namespace
