// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

#include <cstring>
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

/// A text that the call writes.
struct TextOut {
    char* text;
    std::size_t size; ///< bytes that may be written
};

/// A pointer that the journal writes as "null" or as this word: "fn", "ctx", "data".
struct Named {
    bool present;
    const char* name;
};

/// A value that the call writes: logged as it is on return.
template <typename T>
struct Out {
    T* value;
};

/// Functions that wrap each kind of argument.
template <typename T>
Out<T> out(T* value) {
    return {value};
}

/// A callback.
template <typename F>
Named function(F callback) {
    return {callback != nullptr, "fn"};
}

/// The context of a callback.
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
std::string write(const TextOut& text);
std::string write(const Named& pointer);
std::string write(const Out<ToupcamFrameInfoV2>& info);

/// The value that the call wrote, or "null" if it got a null pointer for it.
template <typename T>
std::string write(const Out<T>& output) {
    return output.value ? std::to_string(*output.value) : std::string("null");
}

/// Makes an argument that the call writes absurd: a text fills its memory without an end, every
/// number becomes `number`. All other arguments are inputs, which stay as they are.
template <typename T>
void spoil(const T& /*input*/, HRESULT /*number*/) {
}
inline void spoil(const TextOut& text, HRESULT number) {
    if (text.text)
        std::memset(text.text, number, text.size);
}
inline void spoil(const Out<ToupcamFrameInfoV2>& info, HRESULT number) {
    if (info.value)
        *info.value = {unsigned(number), unsigned(number), unsigned(number), unsigned(number),
                       unsigned(number)};
}
template <typename T>
void spoil(const Out<T>& output, HRESULT number) {
    if (output.value)
        *output.value = static_cast<T>(number);
}

} // namespace PSimArgument
