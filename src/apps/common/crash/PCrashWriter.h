// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

/// Writes text to an open file without allocating memory or taking locks, as a signal handler must.
/// What cannot be written is lost. Any thread, also in a signal handler.
class PCrashWriter {
public:
    /// The descriptor stays open.
    explicit PCrashWriter(int descriptor)
        : m_descriptor(descriptor) {}

    /// A text that ends with a zero byte; null is none.
    PCrashWriter& operator<<(const char* text);
    /// A number in decimal.
    PCrashWriter& operator<<(long long number);
    /// An address in hexadecimal, with 0x.
    PCrashWriter& operator<<(const void* address);

    /// Bytes as they are.
    void write(const char* bytes, std::size_t count);

    int descriptor() const { return m_descriptor; }

private:
    void writeDigits(std::uint64_t number, unsigned base);

    const int m_descriptor;
};
