// SPDX-License-Identifier: MIT
#include <figure/Turns.h>

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace {

double measureOnce(const Measurement& measurement) {
    const double cost = measurement();
    if (cost < 0)
        throw std::runtime_error("could not be measured");
    return cost;
}

/// The value that this share of the values, from 0 to 1, does not exceed.
double findQuantile(std::vector<double> values, double share) {
    if (values.empty())
        return 0;
    const auto place = values.begin() + std::ptrdiff_t(double(values.size() - 1) * share);
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

std::vector<double> makeRatios(const std::vector<double>& ours,
                               const std::vector<double>& references) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < references.size(); ++i) {
        if (references[i] > 0)
            ratios.push_back(ours[i] / references[i]);
    }
    return ratios;
}

} // namespace

Turns Turns::take(const FigurePair& pair, int count) {
    Turns turns;
    for (int turn = -1; turn < count; ++turn) {
        const bool isOursFirst = turn % 2 == 0;
        double reference = 0;
        if (pair.reference && !isOursFirst)
            reference = measureOnce(pair.reference);
        const double ours = measureOnce(pair.ours);
        if (pair.reference && isOursFirst)
            reference = measureOnce(pair.reference);
        if (turn < 0)
            continue;
        turns.m_ours.push_back(ours);
        if (pair.reference)
            turns.m_references.push_back(reference);
    }
    return turns;
}

double Turns::ours() const {
    return findQuantile(m_ours, 0.5);
}

double Turns::reference() const {
    return findQuantile(m_references, 0.5);
}

double Turns::ratio() const {
    return findQuantile(makeRatios(m_ours, m_references), 0.5);
}

double Turns::spread() const {
    const std::vector<double> ratios = makeRatios(m_ours, m_references);
    return findQuantile(ratios, 0.75) - findQuantile(ratios, 0.25);
}
