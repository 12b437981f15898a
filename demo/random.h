#pragma once

#include <cmath>
#include <cstdint>
#include <random>

namespace Demo {

/// Random numbers that are the same with every standard library: the generator is fixed by the standard, and the
/// distributions, which are not, are our own. Each stream of a seed is independent of the others.
class Random {
public:
    Random(std::uint64_t seed, std::uint64_t stream) : m_generator(mixed(seed + mixed(stream))) {}

    /// 0 <= u < 1, of 53 random bits.
    double uniform() { return double(m_generator() >> 11) / 9007199254740992.0; }
    /// Mean 0, deviation 1, by Box and Muller.
    double normal()
    {
        const double radius = std::sqrt(-2 * std::log(1 - uniform()));
        return radius * std::cos(6.283185307179586 * uniform());
    }

private:
    /// The finishing steps of splitmix64, so that neighbouring seeds start far apart.
    static std::uint64_t mixed(std::uint64_t x)
    {
        x += 0x9e3779b97f4a7c15u;
        x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9u;
        x = (x ^ (x >> 27)) * 0x94d049bb133111ebu;
        return x ^ (x >> 31);
    }

    std::mt19937_64 m_generator;
};

} // namespace Demo
