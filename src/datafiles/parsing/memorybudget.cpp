#include "datafiles/parsing/memorybudget.h"

#include <algorithm>

std::size_t MemoryBudget::most(std::size_t records) const
{
    constexpr std::size_t always = std::size_t(40) << 20, perRecord = 512, perByte = 8;
    return always + records * perRecord + std::size_t(m_bytesRead) * perByte;
}

bool MemoryBudget::allows(std::size_t bytes, std::size_t records, std::size_t bytesPerRecord) const
{
    return m_held + records * bytesPerRecord + bytes <= most(records);
}

std::size_t MemoryBudget::left(std::size_t records, std::size_t bytesPerRecord) const
{
    return most(records) - std::min(most(records), m_held + records * bytesPerRecord);
}
