// SPDX-License-Identifier: MIT
#include <toupcam/sim/api/PSimArgument.h>

#include <cstdio>
#include <cstring>

namespace PSimArgument {

std::string quoted(const char* text, std::size_t maximum) {
    if (!text)
        return "null";
    std::string result = "\"";
    const std::size_t length = strnlen(text, maximum);
    for (std::size_t i = 0; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        char escaped[5];
        std::snprintf(escaped, sizeof escaped, "\\x%02x", unsigned(byte));
        // A journal line stays one line, whatever a client passes.
        if (byte < ' ')
            result += escaped;
        else
            result += text[i];
    }
    return result + "\"";
}

std::string write(const Text& text) {
    return quoted(text.text, text.maximum);
}

std::string write(const TextOut& text) {
    return quoted(text.text, text.size);
}

std::string write(const Named& pointer) {
    return pointer.present ? pointer.name : "null";
}

std::string write(const Out<ToupcamFrameInfoV2>& info) {
    if (!info.value)
        return "null";
    return "{" + std::to_string(info.value->width) + "x" + std::to_string(info.value->height) +
           " seq " + std::to_string(info.value->seq) + "}";
}

} // namespace PSimArgument
