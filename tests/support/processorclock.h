#pragma once

#include <ctime>

/// The processor time that the process has taken since this was made: however busy the machine is, nearly the same.
class ProcessorClock {
public:
    double milliseconds() const { return double(std::clock() - m_begin) * 1000 / CLOCKS_PER_SEC; }

private:
    std::clock_t m_begin = std::clock();
};
