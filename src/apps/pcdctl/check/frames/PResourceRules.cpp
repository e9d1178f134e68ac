// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckBench.h>
#include <apps/pcdctl/check/bench/PProcessUsage.h>
#include <apps/pcdctl/check/rules/PCheckRules.h>

#include <QScopeGuard>

#include <algorithm>

namespace {

using Where = PCheckRule::Where;
using For = PCheckRule::For;
using Milliseconds = PCheckBench::Milliseconds;

constexpr int warmUpCycles = 3;
constexpr int measuredCycles = 8;
constexpr Milliseconds threadEndTime{2000};

/// Starts and stops the stream this often; false if no frames arrive.
bool runCycles(PCheckBench& bench, int count) {
    for (int cycle = 0; cycle < count; ++cycle) {
        if (!bench.ensureStream().isOk())
            return false;
        bench.stopStream();
        bench.frames()->reset();
    }
    return true;
}

/// What the measured cycles have left.
PCheckResult measure(PCheckBench& bench,
                     QString (PProcessUsage::*describe)(const PProcessUsage&, int) const) {
    const auto& modes = bench.modes();
    const auto smallest = std::min_element(
        modes.begin(), modes.end(), [](const PDeviceMode& a, const PDeviceMode& b) {
            return qint64(a.width) * a.height < qint64(b.width) * b.height;
        });
    if (smallest != modes.end())
        bench.device().setMode(*smallest);
    const auto putBack = qScopeGuard([&] { bench.putBack(); });
    if (!runCycles(bench, warmUpCycles))
        return PCheckResult::skipped(u"no frames arrive"_qs);
    const PProcessUsage before = PProcessUsage::read();
    if (!runCycles(bench, measuredCycles))
        return PCheckResult::skipped(u"no frames arrive"_qs);
    // Threads may end a little after they were told to.
    bench.waitFor([&] { return PProcessUsage::read().threads <= before.threads; }, threadEndTime);
    const QString left = (PProcessUsage::read().*describe)(before, measuredCycles);
    return PCheckResult::unless(
        left.isEmpty() ? QString()
                       : u"%1 starts and stops: %2"_qs.arg(QString::number(measuredCycles), left));
}

PCheckResult examineThreads(PCheckBench& bench) {
    return measure(bench, &PProcessUsage::describeThreads);
}

PCheckResult examineFiles(PCheckBench& bench) {
    return measure(bench, &PProcessUsage::describeFiles);
}

PCheckResult examineMemory(PCheckBench& bench) {
    return measure(bench, &PProcessUsage::describeMemory);
}

PCheckResult examinePutBack(PCheckBench& bench) {
    bench.putBack();
    const QStringList differences =
        bench.settings().differences(bench.device(), PCheckSettings::All);
    return PCheckResult::unless(differences.join(u"; "_qs));
}

} // namespace

QList<PCheckRule> PCheckRules::resources() {
    const QString hint =
        u"Compare what tryStartStream() makes with what tryStopStream() releases."_qs;
    const QStringList needs{u"stream.starts"_qs, u"stream.delivers"_qs};
    return {
        {u"resources.threads"_qs, u"Starting and stopping a stream leaves no thread behind."_qs,
         hint, Where::Once, For::Camera, &examineThreads, needs},
        {u"resources.files"_qs, u"Starting and stopping a stream leaves no file open."_qs, hint,
         Where::Once, For::Camera, &examineFiles, needs},
        {u"resources.memory"_qs,
         u"Starting and stopping a stream leaves no memory behind: at most 1 MiB each time."_qs,
         hint, Where::Once, For::Camera, &examineMemory, needs},
    };
}

QList<PCheckRule> PCheckRules::settings() {
    return {
        {u"settings.put-back"_qs,
         u"After all that was done to it, the camera can have the settings again that it had "
         "before."_qs,
         u"See which setting changes another one that cannot be set back."_qs,
         Where::Once,
         For::Camera,
         &examinePutBack,
         {u"properties.steady"_qs, u"properties.set-read-back"_qs}},
    };
}
