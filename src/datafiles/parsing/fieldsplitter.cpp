#include "datafiles/parsing/fieldsplitter.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

void FieldSplitter::split(TextView line, char separator, std::size_t limit)
{
    m_line = line;
    if (m_ends.size() < limit + 16)
        m_ends.resize(limit + 16);
    std::uint32_t *ends = m_ends.data();
    std::size_t count = 0; // separators so far; those past the limit are only counted
    std::size_t at = 0;
    const auto take = [&](std::size_t place) {
        if (count < limit)
            ends[count] = std::uint32_t(place);
        ++count;
    };
#ifdef __SSE2__
    const __m128i wanted = _mm_set1_epi8(separator);
    for (; at + 16 <= line.size(); at += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(line.data() + at));
        unsigned found = unsigned(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, wanted)));
        for (; found; found &= found - 1)
            take(at + unsigned(__builtin_ctz(found)));
    }
#endif
    for (; at < line.size(); ++at)
        if (line[at] == separator)
            take(at);
    take(line.size());
    m_count = count;
}
