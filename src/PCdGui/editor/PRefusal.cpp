// SPDX-License-Identifier: MIT
#include <PCdGui/editor/PRefusal.h>

#include <PCd/property/value/PPropertyEncoding.h>

#include <PCore/PMinMaxRange.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double roundedShare = 0.01;

bool isAbout(double a, double b, double step) {
    const double apart = std::abs(a - b);
    return apart < step || apart <= roundedShare * std::max(std::abs(a), std::abs(b));
}

bool isNearlySame(const QVariant& a, const QVariant& b, const QVariant& range) {
    const bool areNumbers = a.typeId() == QMetaType::Int && b.typeId() == QMetaType::Int;
    return areNumbers ? isAbout(a.toInt(), b.toInt(), range.value<PMinMaxRange<int>>().step)
                      : PPropertyEncoding::isSame(a, b, range);
}

} // namespace

bool PRefusal::isOne(const QVariant& before, const QVariant& asked, const QVariant& now,
                     const QVariant& range) {
    return isNearlySame(now, before, range) && !isNearlySame(now, asked, range);
}
