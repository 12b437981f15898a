#pragma once

#include <QByteArrayList>

#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <vector>

/// The seeds that a random test runs over: `count` of them, from 1 on. MORVANTIDE_SEEDS=1000 asks for another number of
/// them, MORVANTIDE_SEEDS=1000,17 for as many from 17 on.
inline std::vector<unsigned> seeds(unsigned count)
{
    const QByteArrayList told = qgetenv("MORVANTIDE_SEEDS").split(',');
    std::vector<unsigned> seeds(told[0].isEmpty() ? count : told[0].toUInt());
    std::iota(seeds.begin(), seeds.end(), told.size() > 1 ? told[1].toUInt() : 1u);
    return seeds;
}

/// A fixture whose tests run once for each seed, which a failure tells as the parameter:
/// INSTANTIATE_TEST_SUITE_P(Seeds, NAME, ::testing::ValuesIn(seeds(20))).
template<class Fixture = ::testing::Test>
class Seeded : public Fixture, public ::testing::WithParamInterface<unsigned> {
protected:
    /// A whole number from low to high, both included.
    int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }

    std::mt19937 random{GetParam()};
};
