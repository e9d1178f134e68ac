// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <utility>
#include <vector>

/// Prints the usual table, and after it how many times as long as a limit each benchmark took. The
/// limit is a benchmark of the same run.
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

/// What the main() of a benchmark program does: runs all of it and prints the table of ratios.
/// Returns the exit code.
int runWithRatios(int argc, char** argv, const std::string& limitName);
