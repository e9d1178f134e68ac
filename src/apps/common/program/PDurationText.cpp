// SPDX-License-Identifier: MIT
#include <apps/common/program/PDurationText.h>

#include <QRegularExpression>

namespace {

constexpr double longest = 24.0 * 3600 * 1e6; // microseconds
constexpr auto numberPattern = R"((?:(\d+(?:\.\d+)?)\s*%1\s*)?)";

QRegularExpression pattern() {
    QString text = u"^\\s*"_qs;
    for (const char* unit : {"m(?!s)", "s", "ms", "(?:us|µs|μs)"})
        text += QString::fromLatin1(numberPattern).arg(QString::fromUtf8(unit));
    return QRegularExpression(text + u'$');
}

/// The total of the groups that matched, in microseconds.
double total(const QRegularExpressionMatch& match) {
    constexpr double units[]{60e6, 1e6, 1e3, 1};
    double sum = 0;
    for (int i = 0; i < 4; ++i)
        sum += match.captured(i + 1).toDouble() * units[i];
    return sum;
}

} // namespace

std::optional<std::chrono::microseconds> PDurationText::parse(const QString& text) {
    bool isPlain = false;
    double sum = text.trimmed().toDouble(&isPlain) * 1e6;
    if (!isPlain) {
        const QRegularExpressionMatch match = pattern().match(text);
        if (text.trimmed().isEmpty() || !match.hasMatch())
            return std::nullopt;
        sum = total(match);
    }
    if (!(sum >= 0 && sum <= longest))
        return std::nullopt;
    // Half a picosecond, so that 1.005 s is not cut to one microsecond less by binary fractions.
    return std::chrono::microseconds(qint64(sum + 0.5e-6));
}
