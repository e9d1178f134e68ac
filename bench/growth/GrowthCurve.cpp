// SPDX-License-Identifier: MIT
#include <growth/GrowthCurve.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <exception>

namespace {

/// scripts/bench takes it apart again.
std::string makeLabel(const GrowthCurve::Names& names) {
    return names.plot + '|' + names.curve + '|' + names.size + '|' + names.first + '|' +
           names.second;
}

std::string makeName(const GrowthCurve::Names& names, double size) {
    std::string number = std::to_string(size);
    number.erase(number.find_last_not_of('0') + 1);
    if (number.back() == '.')
        number.pop_back();
    return "growth/" + names.plot + '/' + names.curve + '/' + number;
}

} // namespace

void GrowthCurve::add(const Names& names, const std::vector<double>& sizes,
                      const std::function<Point(double)>& measure) {
    for (const double size : sizes) {
        const auto run = [=](benchmark::State& state) {
            try {
                Point point;
                for ([[maybe_unused]] auto _ : state)
                    point = measure(size);
                state.SetLabel(makeLabel(names));
                state.counters["size"] = size;
                state.counters["first"] = point.first;
                state.counters["second"] = point.second;
            } catch (const std::exception& error) {
                state.SkipWithError(error.what());
            }
        };
        benchmark::RegisterBenchmark(makeName(names, size).c_str(), run)->Iterations(1);
    }
}

double GrowthCurve::takeMedian(int runs, const std::function<double()>& cost) {
    cost();
    std::vector<double> costs;
    for (int i = 0; i < runs; ++i)
        costs.push_back(cost());
    std::sort(costs.begin(), costs.end());
    return costs[costs.size() / 2];
}
