// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// A short text that is made without allocating memory or taking locks, so that it can also be made
/// in a signal handler. What does not fit is left out. A value; any thread.
class PCD_EXPORT PCallText {
public:
    static constexpr std::size_t longest = 400; ///< bytes

    /// The text so far: printable ASCII.
    std::string_view view() const { return {m_bytes.data(), m_size}; }

    /// Adds a text as it is.
    PCallText& operator<<(std::string_view text);
    /// Adds a number in decimal.
    PCallText& operator<<(std::int64_t number);
    PCallText& operator<<(std::uint64_t number);
    /// Adds an address in hexadecimal, with 0x; "null" for none.
    void addAddress(std::uint64_t address);
    /// Adds bytes in quotation marks; those that are not printable ASCII as `\n`, `\x1b`.
    void addQuoted(std::string_view bytes);

private:
    void addByte(unsigned char byte);

    std::array<char, longest> m_bytes;
    std::size_t m_size = 0;
};
