// SPDX-License-Identifier: MIT
#include <devices/DeviceFigures.h>
#include <devices/OpenCameras.h>

#include <figure/Stopwatch.h>

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

#include <algorithm>
#include <numeric>

namespace {

constexpr int idleCameras = 16;
constexpr std::chrono::milliseconds runTime(125);
constexpr double runsASecond = 8;
constexpr int runs = 5;

void runLoop() {
    QEventLoop loop;
    QTimer::singleShot(runTime, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

/// How often one thread of this process went to sleep.
long countSleeps(const QString& thread) {
    QFile file(u"/proc/self/task/%1/status"_qs.arg(thread));
    if (!file.open(QIODevice::ReadOnly))
        return 0; // it has just ended
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith("voluntary_ctxt_switches:"))
            return line.mid(line.indexOf(':') + 1).trimmed().toLong();
    }
    return 0;
}

/// The same of all threads.
long countSleeps() {
    long all = 0;
    const QStringList threads =
        QDir(u"/proc/self/task"_qs).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& thread : threads)
        all += countSleeps(thread);
    return all;
}

/// Wake-ups a second of an event loop that has nothing to do.
double measureWakeUps() {
    const long before = countSleeps();
    runLoop();
    return double(countSleeps() - before) * runsASecond;
}

/// Microseconds a second that it takes.
double measureTime() {
    return Stopwatch::processMs(runLoop) * 1e3 * runsASecond;
}

std::vector<double> measureRuns(double (*measure)()) {
    std::vector<double> costs;
    for (int run = 0; run < runs; ++run)
        costs.push_back(measure());
    return costs;
}

/// The sums of some runs with open cameras, above the sums without: a wake-up may come in any.
double measureMoreWakeUps(OpenCameras& cameras) {
    cameras.close();
    const std::vector<double> bare = measureRuns(measureWakeUps);
    cameras.open();
    const std::vector<double> open = measureRuns(measureWakeUps);
    return std::max(0.0, std::accumulate(open.begin(), open.end(), 0.0) -
                             std::accumulate(bare.begin(), bare.end(), 0.0)) /
           runs;
}

/// The median run with open cameras, above the busiest without.
double measureMoreTime(OpenCameras& cameras) {
    cameras.close();
    const std::vector<double> bare = measureRuns(measureTime);
    cameras.open();
    std::vector<double> open = measureRuns(measureTime);
    std::sort(open.begin(), open.end());
    return std::max(0.0, open[open.size() / 2] - *std::max_element(bare.begin(), bare.end()));
}

FigurePair compareIdle(double (*measure)(OpenCameras&)) {
    const auto cameras = std::make_shared<OpenCameras>();
    cameras->replace(idleCameras);
    cameras->open();
    cameras->settle();
    return {[=] { return measure(*cameras); }, {}};
}

} // namespace

FigurePair DeviceFigures::wakeUps() {
    return compareIdle(measureMoreWakeUps);
}

FigurePair DeviceFigures::idleTime() {
    return compareIdle(measureMoreTime);
}
