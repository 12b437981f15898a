#include "app/signaltext.h"

#include <cerrno>
#include <unistd.h>

void SignalText::add(char c)
{
    if (m_size < capacity)
        m_text[m_size++] = c;
}

SignalText &SignalText::text(const char *text)
{
    while (text && *text)
        add(*text++);
    return *this;
}

void SignalText::digits(unsigned long long value, unsigned base)
{
    char reversed[64];
    int count = 0;
    do {
        reversed[count++] = "0123456789abcdef"[value % base];
        value /= base;
    } while (value > 0);
    while (count > 0)
        add(reversed[--count]);
}

SignalText &SignalText::decimal(long long value)
{
    const auto bits = static_cast<unsigned long long>(value);
    if (value < 0)
        add('-');
    digits(value < 0 ? 0 - bits : bits, 10);
    return *this;
}

SignalText &SignalText::hexadecimal(std::uintptr_t value)
{
    text("0x");
    digits(value, 16);
    return *this;
}

const char *SignalText::c_str() const
{
    m_text[m_size] = '\0';
    return m_text;
}

bool SignalText::writeTo(int descriptor) const
{
    return writeAll(descriptor, m_text, m_size);
}

bool writeAll(int descriptor, const char *bytes, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = ::write(descriptor, bytes, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes += written;
        size -= std::size_t(written);
    }
    return true;
}
