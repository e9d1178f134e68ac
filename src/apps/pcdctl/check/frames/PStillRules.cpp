// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckBench.h>
#include <apps/pcdctl/check/rules/PCheckRules.h>

namespace {

using Where = PCheckRule::Where;
using For = PCheckRule::For;
using Milliseconds = PCheckBench::Milliseconds;

constexpr Milliseconds secondStillTime{100}; // for one that nobody requested

PCheckResult withoutStills() {
    return PCheckResult::skipped(u"the camera takes no stills"_qs);
}

/// Requests a still and waits for it; the reason if none came.
QString takeStill(PCheckBench& bench) {
    const quint64 before = bench.frames()->seen().stills;
    if (!bench.device().triggerStillCapture())
        return u"the request was refused"_qs;
    return bench.waitFor([&] { return bench.frames()->seen().stills > before; },
                         bench.frameTimeout())
               ? QString()
               : u"the request was accepted, and no still arrived"_qs;
}

PCheckResult examineStill(PCheckBench& bench) {
    if (!bench.device().isSupportStillCapture())
        return withoutStills();
    return PCheckResult::unless(takeStill(bench));
}

PCheckResult examineStillSize(PCheckBench& bench) {
    if (!bench.device().isSupportStillCapture())
        return withoutStills();
    const QString problem = takeStill(bench);
    if (!problem.isEmpty())
        return PCheckResult::skipped(problem);
    const PFrameWatch::Seen seen = bench.frames()->seen();
    return PCheckResult::unless(
        seen.stillSize == seen.liveSize
            ? QString()
            : u"the still has %1 x %2 pixels, live frames %3 x %4"_qs.arg(
                  QString::number(seen.stillSize.width()), QString::number(seen.stillSize.height()),
                  QString::number(seen.liveSize.width()), QString::number(seen.liveSize.height())));
}

PCheckResult examineSingleStill(PCheckBench& bench) {
    if (!bench.device().isSupportStillCapture())
        return withoutStills();
    const quint64 before = bench.frames()->seen().stills;
    const QString problem = takeStill(bench);
    if (!problem.isEmpty())
        return PCheckResult::skipped(problem);
    bench.wait(secondStillTime);
    const quint64 count = bench.frames()->seen().stills - before;
    return PCheckResult::unless(count == 1 ? QString()
                                           : u"%1 stills arrived for one request"_qs.arg(count));
}

PCheckResult examineStreamAfterStill(PCheckBench& bench) {
    if (!bench.device().isSupportStillCapture())
        return withoutStills();
    const QString problem = takeStill(bench);
    if (!problem.isEmpty())
        return PCheckResult::skipped(problem);
    const bool flows = bench.waitForFrames(2);
    bench.stopStream(); // the next rule needs one that flows
    return PCheckResult::unless(flows ? QString() : u"no live frames arrive after the still"_qs);
}

PCheckResult examineSnapshot(PCheckBench& bench) {
    if (!bench.device().isSupportStillCapture())
        return withoutStills();
    const quint64 before = bench.frames()->seen().stills;
    const bool isEmpty = bench.device().getSnapshot().isNull();
    const bool comesLater = bench.device().hasDeviceOption(PCD::DeviceOption::AsynchronousStill);
    const bool hasCome =
        !comesLater ||
        bench.waitFor([&] { return bench.frames()->seen().stills > before; }, bench.frameTimeout());
    if (!hasCome)
        return PCheckResult::failed(u"getSnapshot() returned no image, and no still arrived"_qs);
    if (comesLater == isEmpty)
        return {};
    return PCheckResult::failed(
        comesLater ? u"AsynchronousStill is set, and getSnapshot() returns an image"_qs
                   : u"AsynchronousStill is not set, and getSnapshot() returns no image"_qs);
}

PCheckResult examineWithoutStills(PCheckBench& bench) {
    if (bench.device().isSupportStillCapture())
        return PCheckResult::skipped(u"the camera takes stills"_qs);
    return PCheckResult::unless(bench.device().triggerStillCapture()
                                    ? u"the request for a still was accepted"_qs
                                    : QString());
}

} // namespace

QList<PCheckRule> PCheckRules::still() {
    const QString maker = u"See triggerStillCapture(), and where processSnapshot() is called."_qs;
    return {
        {u"still.arrives"_qs, u"A still that was requested while the camera streams arrives."_qs,
         maker, Where::Streaming, For::Camera, &examineStill},
        {u"still.size"_qs,
         u"A still has the size of the live frames: its mode is the present one."_qs,
         u"Request the still in the present resolution."_qs,
         Where::Streaming,
         For::Camera,
         &examineStillSize,
         {u"still.arrives"_qs, u"stream.frame-size"_qs}},
        {u"still.single"_qs,
         u"One request yields one still."_qs,
         maker,
         Where::Streaming,
         For::Camera,
         &examineSingleStill,
         {u"still.arrives"_qs}},
        {u"still.stream-goes-on"_qs,
         u"The stream goes on after a still."_qs,
         maker,
         Where::Streaming,
         For::Camera,
         &examineStreamAfterStill,
         {u"still.arrives"_qs}},
        {u"still.snapshot"_qs,
         u"getSnapshot() returns an image exactly if the option AsynchronousStill is not set: "
         u"hosts "
         "wait for it otherwise."_qs,
         u"Call setDeviceOption() in the constructor."_qs,
         Where::Streaming,
         For::Camera,
         &examineSnapshot,
         {u"still.arrives"_qs}},
        {u"still.refused-without"_qs,
         u"A camera that takes no stills refuses the request for one: a host would wait."_qs,
         u"Override isSupportStillCapture() too."_qs, Where::Once, For::Camera,
         &examineWithoutStills},
    };
}
