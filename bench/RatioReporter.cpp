// SPDX-License-Identifier: MIT
#include <RatioReporter.h>

#include <unistd.h>

#include <cstdio>

RatioReporter::RatioReporter(std::string limitName)
    : ConsoleReporter(isatty(STDOUT_FILENO) ? OO_ColorTabular : OO_Tabular)
    , m_limitName(std::move(limitName)) {
}

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        const bool isMedian = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
        const bool isOnly = run.run_type == Run::RT_Iteration && run.repetitions <= 1;
        if (!run.error_occurred && (isMedian || isOnly))
            m_times.emplace_back(run.run_name.function_name, run.GetAdjustedRealTime());
    }
}

void RatioReporter::Finalize() {
    ConsoleReporter::Finalize();
    const double limit = limitTime();
    if (limit <= 0) {
        std::printf("\nNo ratios: the limit %s was not measured.\n", m_limitName.c_str());
        return;
    }
    std::printf("\nTime as a multiple of %s\n", m_limitName.c_str());
    for (const auto& [name, time] : m_times)
        std::printf("  %-45s %6.2f\n", name.c_str(), time / limit);
}

double RatioReporter::limitTime() const {
    for (const auto& [name, time] : m_times) {
        if (name == m_limitName)
            return time;
    }
    return 0;
}

int runWithRatios(int argc, char** argv, const std::string& limitName) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RatioReporter reporter(limitName);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
