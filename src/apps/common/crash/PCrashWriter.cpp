// SPDX-License-Identifier: MIT
#include <apps/common/crash/PCrashWriter.h>

#include <unistd.h>

#include <cerrno>
#include <cstring>

void PCrashWriter::write(const char* bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t written = ::write(m_descriptor, bytes, count);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return;
        bytes += written;
        count -= std::size_t(written);
    }
}

PCrashWriter& PCrashWriter::operator<<(const char* text) {
    if (text != nullptr)
        write(text, std::strlen(text));
    return *this;
}

PCrashWriter& PCrashWriter::operator<<(long long number) {
    if (number < 0)
        write("-", 1);
    // The lowest number has no positive counterpart of its type.
    writeDigits(number < 0 ? -std::uint64_t(number) : std::uint64_t(number), 10);
    return *this;
}

PCrashWriter& PCrashWriter::operator<<(const void* address) {
    write("0x", 2);
    writeDigits(reinterpret_cast<std::uintptr_t>(address), 16);
    return *this;
}

void PCrashWriter::writeDigits(std::uint64_t number, unsigned base) {
    char digits[20]; // of the largest number
    char* const end = digits + sizeof digits;
    char* first = end;
    do {
        *--first = "0123456789abcdef"[number % base];
        number /= base;
    } while (number != 0);
    write(first, std::size_t(end - first));
}
