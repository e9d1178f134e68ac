// SPDX-License-Identifier: MIT
#include <toupcam/sim/sensor/PSimTissue.h>

#include <array>

namespace {

constexpr float tissueUnitsWide = 5440.0F;
constexpr float pi = 3.14159265F;
constexpr unsigned groundStep =
    4; // pixels between two computed values of the ground; the others are interpolated

float smoothStep(float low, float high, float x) {
    const float t = std::clamp((x - low) / (high - low), 0.0F, 1.0F);
    return t * t * (3.0F - 2.0F * t);
}

float mixed(float a, float b, float share) {
    return a + (b - a) * share;
}

} // namespace

PSimTissue::PSimTissue(unsigned width, unsigned height, std::uint64_t seed)
    : m_scale(float(width) / tissueUnitsWide)
    , m_unitsHigh(float(height) / m_scale)
    , m_field(seed)
    , m_random(seed)
    , m_nuclei(width, height)
    , m_eosin(width, height) {
}

void PSimTissue::paint() {
    placeGlands();
    paintGround();
    for (const Gland& gland : m_glands)
        paintGlandCells(gland);
    paintStromaCells();
}

void PSimTissue::placeGlands() {
    constexpr int tries = 700;
    for (int i = 0; i < tries; ++i) {
        Gland gland{};
        gland.x = float(m_random.between(-200.0, tissueUnitsWide + 200.0));
        gland.y = float(m_random.between(-200.0, m_unitsHigh + 200.0F));
        gland.radius = float(m_random.between(230.0, 430.0));
        gland.phase2 = float(m_random.between(0.0, 6.28));
        gland.phase3 = float(m_random.between(0.0, 6.28));
        const bool free = std::all_of(m_glands.begin(), m_glands.end(), [&](const Gland& other) {
            return std::hypot(other.x - gland.x, other.y - gland.y) >
                   1.12F * (other.radius + gland.radius) + 40.0F;
        });
        if (free)
            m_glands.push_back(gland);
    }
}

PSimTissue::Place PSimTissue::locate(float u, float v) const {
    Place best{10.0F, 0.0F, nullptr};
    for (const Gland& gland : m_glands) {
        const float dx = u - gland.x;
        const float dy = v - gland.y;
        const float reach = 1.5F * gland.radius;
        if (std::abs(dx) > reach || std::abs(dy) > reach)
            continue;
        const float angle = std::atan2(dy, dx);
        const float edge = gland.radius * (1.0F + 0.14F * std::sin(2.0F * angle + gland.phase2) +
                                           0.07F * std::sin(3.0F * angle + gland.phase3));
        const float depth = std::sqrt(dx * dx + dy * dy) / edge;
        if (depth < best.depth)
            best = {depth, angle, &gland};
    }
    return best;
}

// 0 where the section has a gap, 1 where there is tissue.
float PSimTissue::coverage(float u, float v) const {
    const float wide = m_field.fractal(u / 1500.0F + 3.0F, v / 1500.0F, 4);
    const float torn = m_field.fractal(u / 160.0F, v / 160.0F + 50.0F, 3);
    return smoothStep(0.345F, 0.357F, wide + 0.06F * (torn - 0.5F));
}

PSimTissue::Stains PSimTissue::glandStains(const Place& place, float u, float v) const {
    const float ragged = place.depth + 0.10F * (m_field.fractal(u / 45.0F, v / 45.0F, 2) - 0.5F);
    const float wall = smoothStep(0.30F, 0.37F, ragged); // 0 in the lumen
    const float cells = place.gland->radius * 2.0F * pi / 30.0F;
    // Borders between neighbouring cells run from the lumen to the edge.
    const float border =
        std::pow(std::abs(std::cos(0.5F * std::floor(cells) * place.angle)), 12.0F);
    const float mucus = 0.05F * m_field.fractal(u / 60.0F, v / 60.0F + 9.0F, 3);
    const float cytoplasm = 0.33F + 0.16F * m_field.fractal(u / 26.0F, v / 26.0F, 2);
    const float basal = smoothStep(0.62F, 0.8F, place.depth);
    Stains result{};
    result.eosin = mixed(mucus, cytoplasm + 0.16F * border + 0.10F * basal, wall);
    result.nuclei = mixed(0.4F * mucus, 0.06F + 0.13F * basal + 0.03F * border, wall);
    return result;
}

// How far the collagen that would lie level in a straight section is displaced here.
float PSimTissue::displacement(float u, float v) const {
    return 900.0F * m_field.fractal(u / 1100.0F + 11.0F, v / 1100.0F, 3);
}

// The direction the collagen runs in: along a line of equal v + displacement.
float PSimTissue::fibreAngle(float u, float v) const {
    constexpr float gradientReach = 30.0F;
    const float here = displacement(u, v);
    const float across = (displacement(u + gradientReach, v) - here) / gradientReach;
    const float down = (displacement(u, v + gradientReach) - here) / gradientReach;
    return std::atan2(-across, 1.0F + down);
}

PSimTissue::Stains PSimTissue::stromaStains(float u, float v) const {
    // Collagen: a field drawn out along the fibres, finer and finer bundles over each other.
    const float w = v + displacement(u, v);
    const float bundle = m_field.value(u / 170.0F, w / 34.0F);
    const float fibre = m_field.value(u / 95.0F + 5.0F, w / 13.0F);
    const float fine = m_field.value(u / 60.0F, w / 6.5F + 3.0F);
    const float wave = 0.40F * bundle + 0.35F * fibre + 0.25F * fine;
    const float dense = m_field.fractal(u / 420.0F + 70.0F, v / 420.0F, 2);
    const float loose = smoothStep(0.30F, 0.42F, m_field.fractal(u / 110.0F, w / 45.0F + 40.0F, 3));
    const float crack = smoothStep(0.20F, 0.30F, wave); // clear gaps between bundles
    Stains result{};
    result.eosin = (0.10F + 0.38F * dense + 0.46F * (wave - 0.3F)) * mixed(0.15F, 1.0F, loose) *
                   mixed(0.35F, 1.0F, crack);
    result.nuclei = 0.02F + 0.06F * dense * loose;
    return result;
}

PSimTissue::Stains PSimTissue::stainsAt(float u, float v) const {
    const float covered = coverage(u, v);
    if (covered <= 0.0F)
        return {0.0F, 0.0F};
    const Place place = locate(u, v);
    Stains result{};
    if (place.depth >= 1.06F) {
        result = stromaStains(u, v);
    } else if (place.depth <= 0.98F) {
        result = glandStains(place, u, v);
    } else {
        const Stains inner = glandStains(place, u, v);
        const Stains outer = stromaStains(u, v);
        const float share = smoothStep(0.98F, 1.06F, place.depth);
        // The basement membrane: a thin line of its own around each gland.
        const float membrane = 1.0F - std::abs(2.0F * share - 1.0F);
        result.eosin = mixed(inner.eosin, outer.eosin, share) + 0.22F * membrane;
        result.nuclei = mixed(inner.nuclei, outer.nuclei, share);
    }
    return {result.nuclei * covered, result.eosin * covered};
}

void PSimTissue::paintGround() {
    const unsigned columns = m_nuclei.width() / groundStep + 2;
    const float unitsAStep = float(groundStep) / m_scale;
    std::array<std::vector<Stains>, 2> lines{std::vector<Stains>(columns),
                                             std::vector<Stains>(columns)};
    const auto compute = [&](std::vector<Stains>& line, unsigned step) {
        for (unsigned i = 0; i < columns; ++i)
            line[i] = stainsAt(float(i) * unitsAStep, float(step) * unitsAStep);
    };
    compute(lines[1], 0);
    for (unsigned y = 0; y < m_nuclei.height(); ++y) {
        if (y % groundStep == 0) {
            lines[0].swap(lines[1]);
            compute(lines[1], y / groundStep + 1);
        }
        const float down = float(y % groundStep) / groundStep;
        for (unsigned x = 0; x < m_nuclei.width(); ++x) {
            const float right = float(x % groundStep) / groundStep;
            const std::size_t i = x / groundStep;
            const auto blend = [&](float Stains::*stain) {
                return mixed(mixed(lines[0][i].*stain, lines[0][i + 1].*stain, right),
                             mixed(lines[1][i].*stain, lines[1][i + 1].*stain, right), down);
            };
            m_nuclei.row(y)[x] = PSimPlane::byte(blend(&Stains::nuclei));
            m_eosin.row(y)[x] = PSimPlane::byte(blend(&Stains::eosin));
        }
    }
}

void PSimTissue::paintNucleus(float u, float v, float first, float second, float angle,
                              float strength) {
    const PSimEllipse shape{u * m_scale, v * m_scale, first * m_scale, second * m_scale, angle};
    const float edge = std::min(0.5F, 2.2F / (second * m_scale)); // about two pixels soft
    const bool nucleolus = m_random.uniform() < 0.35;
    paintEllipse(m_nuclei, shape, [&](std::uint8_t& value, float r, float px, float py) {
        const float chromatin =
            m_field.value((shape.x + px) / (4.5F * m_scale), (shape.y + py) / (4.5F * m_scale));
        float dark = strength * (0.72F + 0.38F * chromatin + 0.14F * smoothStep(0.55F, 0.85F, r));
        if (nucleolus)
            dark += 0.25F * (1.0F - smoothStep(0.12F, 0.24F, r));
        const float inside = 1.0F - smoothStep(1.0F - edge, 1.0F, r);
        value = PSimPlane::byte(mixed(float(value) / 255.0F, dark, inside));
    });
}

// A vacuole full of mucus: nearly empty of either stain, with a faint rim.
void PSimTissue::paintGoblet(float u, float v, float size) {
    const PSimEllipse shape{u * m_scale, v * m_scale, size * m_scale, 0.8F * size * m_scale,
                            float(m_random.between(0.0, 3.14))};
    paintEllipse(m_eosin, shape, [](std::uint8_t& value, float r, float, float) {
        value = std::uint8_t(float(value) * mixed(0.25F, 1.0F, smoothStep(0.6F, 1.0F, r)));
    });
    paintEllipse(m_nuclei, shape, [](std::uint8_t& value, float r, float, float) {
        const float mucin = 0.11F * (1.0F - smoothStep(0.7F, 1.0F, r));
        value = std::max(value, PSimPlane::byte(mucin));
    });
}

void PSimTissue::paintGlandCells(const Gland& gland) {
    const auto count = int(2.0F * pi * gland.radius / 27.0F);
    for (int i = 0; i < count; ++i) {
        const float angle =
            (float(i) + float(m_random.between(0.2, 0.8))) * 2.0F * pi / float(count);
        const float edge = gland.radius * (1.0F + 0.14F * std::sin(2.0F * angle + gland.phase2) +
                                           0.07F * std::sin(3.0F * angle + gland.phase3));
        const auto at = [&](double low, double high) {
            return edge * float(m_random.between(low, high));
        };
        const float r = at(0.80, 0.90);
        const float u = gland.x + r * std::cos(angle);
        const float v = gland.y + r * std::sin(angle);
        const bool goblet = m_random.uniform() < 0.34;
        const float g = at(0.50, 0.64);
        if (coverage(u, v) < 0.5F)
            continue;
        if (goblet && coverage(gland.x + g * std::cos(angle), gland.y + g * std::sin(angle)) > 0.9F)
            paintGoblet(gland.x + g * std::cos(angle), gland.y + g * std::sin(angle),
                        float(m_random.between(20.0, 30.0)));
        paintNucleus(u, v, float(m_random.between(19.0, 26.0)), float(m_random.between(9.5, 12.0)),
                     angle + float(m_random.between(-0.25, 0.25)),
                     float(m_random.between(0.62, 0.85)));
    }
}

void PSimTissue::paintStromaCells() {
    constexpr float stromaPitch = 62.0F;
    for (int row = 0; float(row) * stromaPitch < m_unitsHigh; ++row) {
        for (int column = 0; float(column) * stromaPitch < tissueUnitsWide; ++column) {
            const float u = float(column) * stromaPitch + float(m_random.between(0.0, stromaPitch));
            const float v = float(row) * stromaPitch + float(m_random.between(0.0, stromaPitch));
            const double kind = m_random.uniform();
            const auto strength = float(m_random.between(0.7, 0.95));
            const float angle = fibreAngle(u, v) + float(m_random.between(-0.25, 0.25));
            const bool crowded = m_field.fractal(u / 380.0F, v / 380.0F + 80.0F, 2) > 0.58F;
            if (locate(u, v).depth < 1.1F || coverage(u, v) < 0.9F)
                continue;
            if (kind < (crowded ? 0.75 : 0.08)) {
                const auto size = float(m_random.between(11.0, 14.0));
                paintNucleus(u, v, size, 0.92F * size, angle, strength + 0.05F);
            } else if (kind < 0.45) {
                paintNucleus(u, v, float(m_random.between(20.0, 30.0)),
                             float(m_random.between(5.0, 7.5)), angle, strength);
            }
        }
    }
}
