// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckBench.h>
#include <apps/pcdctl/check/rules/PCheckRules.h>

#include <PCd/property/PDeviceProperty.h>

#include <QElapsedTimer>

namespace {

using Where = PCheckRule::Where;
using For = PCheckRule::For;
using Milliseconds = PCheckBench::Milliseconds;

constexpr Milliseconds longestLink{3000};
constexpr Milliseconds longestCall{1000};
constexpr Milliseconds longestStart{2000};
constexpr Milliseconds longestStop{2000};
constexpr int linkCycles = 3;
constexpr int timedReadings = 10; // not all take the same time

template <typename Call>
Milliseconds measureTime(const Call& call) {
    QElapsedTimer clock;
    clock.start();
    call();
    return Milliseconds(clock.elapsed());
}

PCheckResult judgeTime(const QString& what, Milliseconds took, Milliseconds limit) {
    if (took <= limit)
        return {};
    return PCheckResult::failed(u"%1 took %2 ms, more than %3 ms"_qs.arg(
        what, QString::number(took.count()), QString::number(limit.count())));
}

PCheckResult examineLink(PCheckBench& bench) {
    return PCheckResult::unless(bench.linked().reason());
}

PCheckResult examineRelink(PCheckBench& bench) {
    for (int cycle = 1; cycle <= linkCycles; ++cycle) {
        bench.device().unlink();
        const PStatus linked = bench.device().link();
        if (linked.isOk())
            continue;
        bench.device().link(); // for the rules that follow
        return PCheckResult::failed(
            u"after being unlinked %1 times: %2"_qs.arg(QString::number(cycle), linked.reason()));
    }
    return {};
}

PCheckResult examineUnlink(PCheckBench& bench) {
    const PStatus unlinked = bench.device().unlink();
    bench.device().link();
    return PCheckResult::unless(unlinked.reason());
}

PCheckResult examineLinkTime(PCheckBench& bench) {
    return judgeTime(u"linking"_qs, bench.linkTook(), longestLink);
}

PCheckResult examineModesTime(PCheckBench& bench) {
    const Milliseconds took = measureTime([&] {
        bench.device().getSupportModes();
        bench.device().getCurrentMode();
    });
    return judgeTime(u"reading the modes"_qs, took, longestCall);
}

PCheckResult examinePropertyTime(PCheckBench& bench) {
    PDeviceProperty& property = bench.property();
    for (int i = 0; i < timedReadings; ++i) {
        const Milliseconds took = measureTime([&] { property.readFromDevice(); });
        if (took > longestCall)
            return judgeTime(u"reading"_qs, took, longestCall);
    }
    return {};
}

PCheckResult examineStartTime(PCheckBench& bench) {
    PStatus started;
    const Milliseconds took = measureTime([&] { started = bench.device().startStream(); });
    if (started.isOk())
        bench.waitForFrames(1); // a stop before the first one is the matter of another rule
    bench.stopStream();
    return started.isOk() ? judgeTime(u"starting the stream"_qs, took, longestStart)
                          : PCheckResult::skipped(started.reason());
}

PCheckResult examineStopTime(PCheckBench& bench) {
    const PStatus stream = bench.ensureStream();
    if (!stream.isOk())
        return PCheckResult::skipped(stream.reason());
    const Milliseconds limit = longestStop + bench.frameTimeout() - bench.timeout();
    const Milliseconds took = measureTime([&] { bench.device().stopStream(); });
    return judgeTime(u"stopping the stream"_qs, took, limit);
}

} // namespace

QList<PCheckRule> PCheckRules::open() {
    return {
        {u"open.link"_qs,
         u"A camera that is listed can be linked: a host does so when it opens it."_qs,
         u"See tryLink(). A camera that cannot be opened is left out by aliveDevices()."_qs,
         Where::Once, For::Camera, &examineLink},
        {u"open.again"_qs,
         u"A camera that was unlinked can be linked again: users close and open cameras often."_qs,
         u"See whether tryUnlink() releases all that tryLink() takes."_qs,
         Where::Once,
         For::Camera,
         &examineRelink,
         {u"open.link"_qs}},
        {u"open.unlink"_qs,
         u"Unlinking succeeds: the host has then no more use for the camera."_qs,
         u"Return true from tryUnlink() if nothing is left to be done, also if the camera is gone."_qs,
         Where::Once,
         For::Camera,
         &examineUnlink,
         {u"open.link"_qs, u"open.again"_qs}},
    };
}

QList<PCheckRule> PCheckRules::timing() {
    const QString why = u"the host calls it on its main thread, where the window waits for it."_qs;
    return {
        {u"timing.link"_qs, u"Linking takes at most 3 seconds: "_qs + why,
         u"Do what takes long on a thread of the driver."_qs, Where::Once, For::Camera,
         &examineLinkTime},
        {u"timing.modes"_qs, u"Reading the modes takes at most a second: "_qs + why,
         u"Read what never changes once, in the constructor."_qs, Where::Once, For::Camera,
         &examineModesTime},
        {u"timing.property"_qs, u"Reading a property takes at most a second: "_qs + why,
         u"See which call of the SDK takes so long, and whether another has the same value."_qs,
         Where::Once, For::EachProperty, &examinePropertyTime},
        {u"timing.start"_qs, u"Starting the stream takes at most 2 seconds: "_qs + why,
         u"Return from tryStartStream() before the first frame; do not wait for it."_qs,
         Where::Once, For::Camera, &examineStartTime},
        {u"timing.stop"_qs,
         u"Stopping the stream takes at most 2 seconds beyond the exposure time: "_qs + why,
         u"Wake the thread that delivers frames instead of waiting until it looks."_qs, Where::Once,
         For::Camera, &examineStopTime},
    };
}
