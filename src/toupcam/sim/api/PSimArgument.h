// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

#include <string>
#include <type_traits>

/// The text form of SDK calls' arguments in the journal. All callable from any thread.
namespace PSimArgument {

/// A text in double quotes, at most `maximum` bytes of it; a null pointer is "null".
std::string quoted(const char* text, std::size_t maximum);

/// A text argument such as a camera id.
struct Text {
    const char* text;
    std::size_t maximum; ///< bytes that may be read
};

/// A pointer that the journal shows as "null" or as this word: "fn", "ctx", "data".
struct Named {
    bool present;
    const char* name;
};

/// A value the call writes: shown as it is on return.
template <typename T>
struct Out {
    const T* value;
};

/// The wrappers for each kind of argument.
template <typename T>
Out<T> out(const T* value) {
    return {value};
}

/// A callback.
template <typename F>
Named function(F callback) {
    return {callback != nullptr, "fn"};
}

/// What a callback is given back.
inline Named context(const void* pointer) {
    return {pointer != nullptr, "ctx"};
}

/// Memory for pixels.
inline Named buffer(const void* pointer) {
    return {pointer != nullptr, "data"};
}

/// The text of one argument: numbers in decimal, wrapped values as described there.
template <typename T>
std::string write(T value) {
    static_assert(std::is_integral_v<T>);
    return std::to_string(value);
}

/// Texts in double quotes, pointers by name, a frame's information field by field.
std::string write(const Text& text);
std::string write(const Named& pointer);
std::string write(const Out<ToupcamFrameInfoV2>& info);

/// What the call wrote, or "null" if it was given no place for it.
template <typename T>
std::string write(const Out<T>& output) {
    return output.value ? std::to_string(*output.value) : std::string("null");
}

} // namespace PSimArgument
