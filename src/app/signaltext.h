#pragma once

#include <cstddef>
#include <cstdint>

/// Puts a text together where nothing may be allocated or locked, as in a signal handler. A text that doesn't fit is
/// cut.
class SignalText {
public:
    SignalText &text(const char *text); ///< null adds nothing
    SignalText &decimal(long long value);
    SignalText &hexadecimal(std::uintptr_t value); ///< with "0x"
    void clear() { m_size = 0; }

    /// Ended by a zero.
    const char *c_str() const;
    std::size_t size() const { return m_size; }
    /// Writes all of it; interrupted and short writes go on.
    bool writeTo(int descriptor) const;

private:
    static constexpr std::size_t capacity = 4608; // a whole path, and words around it

    void add(char c);
    void digits(unsigned long long value, unsigned base);

    std::size_t m_size = 0;
    mutable char m_text[capacity + 1];
};

/// Writes all bytes; interrupted and short writes go on. False if not all of them could be.
bool writeAll(int descriptor, const char *bytes, std::size_t size);
