// SPDX-License-Identifier: MIT
#include <apps/common/hang/PEnvironmentSeconds.h>

#include <PCore/PPrintableText.h>

#include <QString>

#include <cmath>
#include <optional>

namespace {

/// Nothing for what is no time in the range. Rounded up: no time is none.
std::optional<std::chrono::milliseconds> toTime(const QString& text) {
    const double seconds = text.toDouble();
    if (seconds > 0 && seconds <= 3600)
        return std::chrono::milliseconds(std::llround(std::ceil(seconds * 1e3)));
    return std::nullopt;
}

} // namespace

std::chrono::milliseconds PEnvironmentSeconds::read(const char* variable,
                                                    std::chrono::milliseconds usual) {
    return toTime(qEnvironmentVariable(variable)).value_or(usual);
}

PStatus PEnvironmentSeconds::check(const char* variable) {
    const QString text = qEnvironmentVariable(variable);
    if (text.isEmpty() || toTime(text))
        return PStatus::Ok;
    return PStatus::failure(
        u"%1: \"%2\" is no time, so it is ignored: expected seconds above 0, 3600 at most"_qs.arg(
            QString::fromLatin1(variable), PPrintableText::toLine(text)));
}
