// SPDX-License-Identifier: MIT
#include <toupcam/sim/sensor/PSimCells.h>

namespace {

constexpr float cellUnitsWide = 1280.0F;
constexpr float pitch = 118.0F; // units from cell to cell

// Overlapping dyes add up, but never beyond full intensity.
std::uint8_t added(std::uint8_t value, float more) {
    return std::uint8_t(std::min(255.0F, float(value) + 255.0F * more));
}

} // namespace

PSimCells::PSimCells(unsigned width, unsigned height, std::uint64_t seed)
    : m_scale(float(width) / cellUnitsWide)
    , m_unitsHigh(float(height) / m_scale)
    , m_field(seed)
    , m_random(seed)
    , m_nuclei(width, height)
    , m_fibres(width, height) {
}

void PSimCells::paint() {
    for (int row = -1; float(row) * pitch < m_unitsHigh + pitch; ++row) {
        for (int column = -1; float(column) * pitch < cellUnitsWide + pitch; ++column) {
            Cell cell{};
            cell.x = float(column) * pitch + float(m_random.between(0.0, 0.8 * pitch));
            cell.y = float(row) * pitch + float(m_random.between(0.0, 0.8 * pitch));
            cell.size = float(m_random.between(15.0, 22.0));
            cell.angle = float(m_random.between(0.0, 3.14));
            cell.brightness = float(m_random.between(0.55, 1.0));
            if (m_random.uniform() < 0.2)
                continue;
            paintBody(cell);
            paintNucleus(cell);
        }
    }
}

// Fibres run along the cell's long axis; two nearby directions crossing make the net.
void PSimCells::paintBody(const Cell& cell) {
    const PSimEllipse shape{cell.x * m_scale, cell.y * m_scale, 5.2F * cell.size * m_scale,
                            2.9F * cell.size * m_scale, cell.angle};
    const float c = std::cos(cell.angle);
    const float s = std::sin(cell.angle);
    paintEllipse(m_fibres, shape, [&](std::uint8_t& value, float r, float px, float py) {
        const float u = px / m_scale;
        const float v = py / m_scale;
        const float along = c * u + s * v;
        const float across = c * v - s * u;
        const float x = cell.x + u;
        const float y = cell.y + v;
        const float own = 40.0F * cell.angle; // neighbours must not have the same frayed edge
        const float frayed = m_field.fractal(x / 48.0F + own, y / 48.0F, 4) - 0.5F;
        const float body = std::clamp(1.0F - r - 1.3F * frayed, 0.0F, 1.0F);
        const float bend = 16.0F * m_field.fractal(x / 110.0F, y / 110.0F, 2);
        // Bundles begin and end: each fibre is bright only in places along its length.
        const float bundle = m_field.value(along / 26.0F + own, across / 4.0F);
        const float fibre = std::pow(0.5F + 0.5F * std::sin(across * 0.9F + bend), 3.0F) * bundle;
        const float cross =
            std::pow(0.5F + 0.5F * std::sin((across + 0.4F * along) * 0.7F - bend), 6.0F) *
            (1.0F - bundle);
        const float rim = body > 0.0F && body < 0.05F ? 0.10F : 0.0F; // ruffles at the edge
        const float flat = std::min(1.0F, 6.0F * body) * (0.07F + 0.10F * bundle);
        const float light = flat + rim + std::sqrt(body) * (0.42F * fibre + 0.22F * cross);
        value = added(value, cell.brightness * light);
    });
}

void PSimCells::paintNucleus(const Cell& cell) {
    const PSimEllipse shape{cell.x * m_scale, cell.y * m_scale, 1.15F * cell.size * m_scale,
                            0.85F * cell.size * m_scale, cell.angle};
    paintEllipse(m_nuclei, shape, [&](std::uint8_t& value, float r, float px, float py) {
        const float chromatin = m_field.fractal((shape.x + px) / (4.0F * m_scale),
                                                (shape.y + py) / (4.0F * m_scale), 2);
        const float soft = std::min(1.0F, (1.0F - r) * 5.0F);
        value = added(value, cell.brightness * soft * (0.45F + 0.5F * chromatin));
    });
}
