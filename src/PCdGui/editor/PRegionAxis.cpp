// SPDX-License-Identifier: MIT
#include <PCdGui/editor/PRegionAxis.h>

#include <algorithm>

namespace {

/// The multiples of a step nearest to a non-negative number.
int multipleBelow(int number, int step) {
    return number / step * step;
}

int multipleAbove(int number, int step) {
    return multipleBelow(number + step - 1, step);
}

} // namespace

PRegionAxis PRegionAxis::horizontal(const PScanAreaRange& range) {
    return {range.bounds.left(), range.bounds.left() + range.bounds.width(), range.minimumWidth,
            range.widthStep, range.offsetStep};
}

PRegionAxis PRegionAxis::vertical(const PScanAreaRange& range) {
    return {range.bounds.top(), range.bounds.top() + range.bounds.height(), range.minimumHeight,
            range.heightStep, range.offsetStep};
}

PRegionAxis::PRegionAxis(int first, int end, int minimum, int sizeStep, int offsetStep)
    : m_first(first)
    , m_end(end)
    , m_sizeStep(std::max(1, sizeStep))
    , m_offsetStep(std::max(1, offsetStep))
    , m_minimum(multipleAbove(std::max(1, minimum), m_sizeStep)) {
}

PMinMaxRange<double> PRegionAxis::offsets() const {
    const int first = multipleAbove(m_first, m_offsetStep);
    const int last = multipleBelow(std::max(first, m_end - m_minimum), m_offsetStep);
    return {double(first), double(last), double(m_offsetStep)};
}

PMinMaxRange<double> PRegionAxis::sizes(int offset) const {
    const int biggest = multipleBelow(std::max(m_minimum, m_end - offset), m_sizeStep);
    return {double(m_minimum), double(biggest), double(m_sizeStep)};
}

int PRegionAxis::fitted(int offset, int size) const {
    return std::min(size, int(sizes(offset).maximum));
}
