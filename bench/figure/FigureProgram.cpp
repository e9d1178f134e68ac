// SPDX-License-Identifier: MIT
#include <figure/FigureProgram.h>

#include <figure/Turns.h>

#include <benchmark/benchmark.h>

#include <exception>
#include <memory>

namespace {

/// Counts what could not be measured, for the exit code: Google Benchmark returns none.
class FailureReporter : public benchmark::ConsoleReporter {
public:
    FailureReporter()
        : ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.error_occurred)
                ++m_failures;
        }
    }

    int failures() const { return m_failures; }

private:
    int m_failures = 0;
};

/// What scripts/bench reads, apart from the numbers: words that no counter can carry.
std::string makeLabel(const Figure& figure, const std::string& ours) {
    return ours + '|' + figure.reference + '|' + figure.unit;
}

void report(benchmark::State& state, const Figure& figure, const Turns& turns) {
    state.SetLabel(makeLabel(figure, figure.ours));
    state.counters["ours"] = turns.ours();
    state.counters["target"] = figure.target;
    if (figure.bound == Figure::Bound::Value)
        return;
    state.counters["reference"] = turns.reference();
    state.counters["ratio"] = turns.ratio();
    state.counters["spread"] = turns.spread();
}

void reportMissing(benchmark::State& state, const Figure& figure, const std::string& reason) {
    for ([[maybe_unused]] auto _ : state) {
    }
    state.SetLabel(makeLabel(figure, figure.ours + " (not built: " + reason + ")"));
    state.counters["missing"] = 1;
    state.counters["target"] = figure.target;
}

void measure(benchmark::State& state, const Figure& figure, const FigureProgram::Prepare& prepare) {
    Turns turns;
    try {
        const FigurePair pair = prepare();
        for ([[maybe_unused]] auto _ : state)
            turns = Turns::take(pair, figure.turns);
    } catch (const std::exception& error) {
        state.SkipWithError(error.what());
        return;
    }
    report(state, figure, turns);
}

} // namespace

void FigureProgram::add(const Figure& figure, Prepare prepare) {
    benchmark::RegisterBenchmark(figure.name.c_str(), [figure, prepare = std::move(prepare)](
                                                          benchmark::State& state) {
        measure(state, figure, prepare);
    })->Iterations(1); // which takes all turns
}

void FigureProgram::addMissing(const Figure& figure, const std::string& reason) {
    benchmark::RegisterBenchmark(figure.name.c_str(), [figure, reason](benchmark::State& state) {
        reportMissing(state, figure, reason);
    })->Iterations(1);
}

int FigureProgram::run(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    FailureReporter reporter;
    const std::size_t count = benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return count > 0 && reporter.failures() == 0 ? 0 : 1;
}
