// SPDX-License-Identifier: MIT
#include <growth/Growth.h>

#include <PLog/PLog.h>

#include <benchmark/benchmark.h>

#include <QApplication>

// Time and memory against size: what grows faster than the size bends upwards in the plots that
// scripts/bench draws of these rows.

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    PLog::installQtMessageHandler();
    PLog::setFilter(u"warning,PTDevice=off,qt=error"_qs);
    Growth::addCameras();
    Growth::addFrames();
    Growth::addRates();
    Growth::addRecordings();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
