// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <utility>
#include <vector>

/// Prints the usual table, then the ratio of each benchmark's time to that of a limit, which is a
/// benchmark of the same run.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    explicit RatioReporter(std::string limitName);

    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    double limitTime() const;

    std::string m_limitName;
    std::vector<std::pair<std::string, double>> m_times; // of one iteration, in the run's unit
};

/// The main() of a benchmark program: runs all benchmarks and prints the table of ratios. Returns
/// the exit code.
int runWithRatios(int argc, char** argv, const std::string& limitName);
