// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/call/PCallRecord.h>
#include <PCore/call/PCallText.h>

#include <array>
#include <cstring>
#include <type_traits>

/// How an argument of type `T` is kept in a record, and written from there: a number, an enumerator
/// or an address, in one word. keep(): the record's thread; write(): any thread, also in a signal
/// handler.
template <typename T>
struct PCallWords {
    static_assert(std::is_integral_v<T> || std::is_enum_v<T> || std::is_pointer_v<T>);
    static constexpr std::size_t count = 1;

    /// Keeps the argument in the words from `at` on.
    static void keep(PCallRecord& call, std::size_t at, T value) {
        call.keep(at, PCallRecord::Word(value));
    }
    /// Adds its text.
    static void write(const PCallRecord& call, std::size_t at, PCallText& text) {
        const PCallRecord::Word word = call.word(at);
        if constexpr (std::is_pointer_v<T>)
            text.addAddress(word);
        else if constexpr (std::is_signed_v<T>)
            text << std::int64_t(word);
        else
            text << word;
    }
};

/// A text that the function receives: its first bytes, because it may be gone when it is written.
template <>
struct PCallWords<const char*> {
    static constexpr std::size_t count = 6;
    static constexpr std::size_t bytes = count * sizeof(PCallRecord::Word);

    /// Keeps the bytes in the words from `at` on.
    static void keep(PCallRecord& call, std::size_t at, const char* text) {
        std::array<PCallRecord::Word, count> words{};
        if (text != nullptr)
            std::memcpy(words.data(), text, strnlen(text, bytes));
        for (std::size_t i = 0; i < count; ++i)
            call.keep(at + i, words[i]);
    }
    /// Adds the text in quotation marks.
    static void write(const PCallRecord& call, std::size_t at, PCallText& text) {
        std::array<PCallRecord::Word, count> words{};
        for (std::size_t i = 0; i < count; ++i)
            words[i] = call.word(at + i);
        const auto* const kept = reinterpret_cast<const char*>(words.data());
        text.addQuoted({kept, strnlen(kept, bytes)});
    }
};
