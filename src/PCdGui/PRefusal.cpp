// SPDX-License-Identifier: MIT
#include <PCdGui/PRefusal.h>

#include <PCore/PMinMaxRange.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double roundedShare = 0.01;

bool isAbout(double a, double b, double step) {
    const double apart = std::abs(a - b);
    return apart < step || apart <= roundedShare * std::max(std::abs(a), std::abs(b));
}

bool isSame(const QVariant& a, const QVariant& b, const QVariant& range) {
    const bool areNumbers = a.typeId() == QMetaType::Int && b.typeId() == QMetaType::Int;
    return areNumbers ? isAbout(a.toInt(), b.toInt(), range.value<PMinMaxRange<int>>().step)
                      : a == b;
}

} // namespace

bool PRefusal::isOne(const QVariant& before, const QVariant& asked, const QVariant& now,
                     const QVariant& range) {
    return isSame(now, before, range) && !isSame(now, asked, range);
}
