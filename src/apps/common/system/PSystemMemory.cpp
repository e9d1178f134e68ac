// SPDX-License-Identifier: MIT
#include <apps/common/system/PSystemMemory.h>

#include <QRegularExpression>

std::optional<quint64> PSystemMemory::available(const PSystemTree& system) {
    static const QRegularExpression line(u"^MemAvailable:\\s+([0-9]+) kB$"_qs,
                                         QRegularExpression::MultilineOption);
    const QRegularExpressionMatch match = line.match(system.readText(u"proc/meminfo"_qs));
    if (!match.hasMatch())
        return std::nullopt;
    return match.captured(1).toULongLong() * 1024;
}
