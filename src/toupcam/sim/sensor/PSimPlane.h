// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

/// One 8-bit value a pixel: how much of a stain, or of a dye, there is. Not shared between threads
/// while it is painted.
class PSimPlane {
public:
    PSimPlane(unsigned width, unsigned height)
        : m_width(width)
        , m_height(height)
        , m_values(std::size_t{width} * height) {}

    unsigned width() const { return m_width; }
    unsigned height() const { return m_height; }
    std::uint8_t* row(unsigned y) { return m_values.data() + std::size_t{y} * m_width; }
    const std::uint8_t* row(unsigned y) const { return m_values.data() + std::size_t{y} * m_width; }

    /// A share, 0 … 1, as a value of the plane.
    static std::uint8_t byte(float share) {
        // Rounds, because it is never negative; std::lround() would be a call for each pixel.
        // NOLINTNEXTLINE(bugprone-incorrect-roundings)
        return std::uint8_t(std::clamp(share, 0.0F, 1.0F) * 255.0F + 0.5F);
    }

private:
    unsigned m_width;
    unsigned m_height;
    std::vector<std::uint8_t> m_values;
};

/// An ellipse somewhere on a plane, in pixels; `angle` turns the first axis from the x axis.
struct PSimEllipse {
    float x = 0.0F;
    float y = 0.0F;
    float first = 1.0F;
    float second = 1.0F;
    float angle = 0.0F;
};

/// Calls paint(value, r, px, py) for each pixel of the plane inside the ellipse; r is 0 in the
/// centre and 1 on the edge, px and py are pixels from the centre.
template <typename Paint>
void paintEllipse(PSimPlane& plane, const PSimEllipse& shape, const Paint& paint) {
    const float reach = std::max(shape.first, shape.second) + 1.0F;
    const auto clip = [](float value, unsigned limit) {
        return unsigned(std::clamp(value, 0.0F, float(limit)));
    };
    const float c = std::cos(shape.angle);
    const float s = std::sin(shape.angle);
    for (unsigned y = clip(shape.y - reach, plane.height());
         y < clip(shape.y + reach + 1.0F, plane.height()); ++y) {
        std::uint8_t* row = plane.row(y);
        for (unsigned x = clip(shape.x - reach, plane.width());
             x < clip(shape.x + reach + 1.0F, plane.width()); ++x) {
            const float px = float(x) - shape.x;
            const float py = float(y) - shape.y;
            const float a = (c * px + s * py) / shape.first;
            const float b = (c * py - s * px) / shape.second;
            const float r2 = a * a + b * b;
            if (r2 < 1.0F)
                paint(row[x], std::sqrt(r2), px, py);
        }
    }
}
