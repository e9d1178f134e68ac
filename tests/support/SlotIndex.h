// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstring>
#include <optional>

/// The slot of a virtual function in its class's virtual table; nothing for a function that is not
/// virtual. Computed from the pointer to member: in the Itanium C++ ABI (section 2.3, "Member
/// Function Pointers") its first word is the function's offset in the table in bytes plus one for a
/// virtual function, and an even address for any other.
template <typename Class, typename Function>
std::optional<std::size_t> slotIndex(Function Class::*member) {
    std::size_t word = 0;
    static_assert(sizeof(member) == 2 * sizeof(word));
    std::memcpy(&word, &member, sizeof(word));
    if (word % 2 == 0)
        return std::nullopt;
    return (word - 1) / sizeof(void*);
}
