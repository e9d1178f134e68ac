// SPDX-License-Identifier: MIT
#include <PCore/call/PCallText.h>

#include <algorithm>
#include <charconv>
#include <limits>

namespace {

constexpr unsigned hexadecimal = 16;
constexpr std::size_t mostDigits = std::numeric_limits<std::uint64_t>::digits10 + 2; // and a sign

/// Of a number; std::to_chars() needs neither memory nor the locale.
template <typename Number>
void addDigits(PCallText& text, Number number, int base) {
    std::array<char, mostDigits> digits;
    char* const end = std::to_chars(digits.begin(), digits.end(), number, base).ptr;
    text << std::string_view(digits.data(), std::size_t(end - digits.data()));
}

bool isPrintableByte(unsigned char byte) {
    return byte >= ' ' && byte <= '~';
}

} // namespace

PCallText& PCallText::operator<<(std::string_view text) {
    const std::size_t count = std::min(text.size(), longest - m_size);
    std::copy_n(text.begin(), count, m_bytes.begin() + std::ptrdiff_t(m_size));
    m_size += count;
    return *this;
}

PCallText& PCallText::operator<<(std::int64_t number) {
    addDigits(*this, number, 10);
    return *this;
}

PCallText& PCallText::operator<<(std::uint64_t number) {
    addDigits(*this, number, 10);
    return *this;
}

void PCallText::addAddress(std::uint64_t address) {
    if (address == 0) {
        *this << "null";
        return;
    }
    *this << "0x";
    addDigits(*this, address, hexadecimal);
}

void PCallText::addQuoted(std::string_view bytes) {
    *this << "\"";
    for (const char byte : bytes)
        addByte(static_cast<unsigned char>(byte));
    *this << "\"";
}

void PCallText::addByte(unsigned char byte) {
    const char same = char(byte);
    if (isPrintableByte(byte)) {
        *this << std::string_view(&same, 1);
    } else if (byte == '\n') {
        *this << "\\n";
    } else {
        *this << (byte < hexadecimal ? "\\x0" : "\\x");
        addDigits(*this, unsigned(byte), hexadecimal);
    }
}
