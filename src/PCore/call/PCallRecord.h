// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

class PCallText;

/// One call of a thread: which function, and its arguments as words. Written by that thread without
/// a lock or a clock, and read by any other one.
class PCD_EXPORT PCallRecord {
public:
    using Word = std::uint64_t;
    static constexpr std::size_t mostWords = 8;
    /// What all calls of a function have in common. It exists as long as the process.
    struct Kind {
        const char* name; ///< of the function
        /// Writes what a record of this kind keeps; also in a signal handler.
        void (*writeArguments)(const PCallRecord& call, PCallText& text);
    };

    /// Keeps a part of the arguments, before begin(). The record's thread.
    void keep(std::size_t index, Word word) {
        m_words[index].store(word, std::memory_order_release);
    }
    /// The call begins. The record's thread.
    void begin(const Kind& kind) {
        m_kind.store(reinterpret_cast<Word>(&kind), std::memory_order_release);
    }
    /// There is no call in this record any more. The record's thread.
    void clear() { m_kind.store(none, std::memory_order_release); }

    /// What keep() was given. Any thread.
    Word word(std::size_t index) const { return m_words[index].load(std::memory_order_acquire); }
    /// Marks the call; false if there is none. The record's next call has no mark. Any thread.
    bool mark();
    bool isMarked() const { return (m_kind.load(std::memory_order_acquire) & marked) != 0; }
    /// Adds "name(arguments)"; false, with any text, if there is no call, or another one took its
    /// place meanwhile. Any thread, also in a signal handler.
    bool write(PCallText& text) const;

    /// The record of the thread's next call.
    PCallRecord* next() const { return m_next; }

private:
    friend class PCallSlot;

    static constexpr Word none = 0;
    static constexpr Word marked = 1; ///< in the address of a kind, which is even

    std::atomic<Word> m_kind{none};
    std::array<std::atomic<Word>, mostWords> m_words{};
    PCallRecord* m_next = nullptr; ///< never changes
};
