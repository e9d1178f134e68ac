// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckBench.h>
#include <apps/pcdctl/check/bench/PCheckValues.h>
#include <apps/pcdctl/check/rules/PCheckRules.h>

#include <PCd/PEnumeration.h>
#include <PCd/PScanAreaRange.h>
#include <PCd/device/PDeviceRoles.h>

#include <QPointer>
#include <QScopeGuard>

namespace {

using Where = PCheckRule::Where;
using For = PCheckRule::For;
using Milliseconds = PCheckBench::Milliseconds;

constexpr int framesToCompare = 3;
constexpr Milliseconds lateFrameTime{150};

/// True if a property leaves the size of frames as it is: its range's first value, or the whole
/// area.
bool isNeutral(const PDeviceProperty* property) {
    if (property == nullptr)
        return true;
    const QVariant range = property->rangeInner();
    const QVariant value = property->valueInner();
    if (range.metaType() == QMetaType::fromType<PScanAreaRange>())
        return value.toRect() == range.value<PScanAreaRange>().bounds;
    if (range.metaType() == QMetaType::fromType<PEnumeration>()) {
        const auto choices = range.value<PEnumeration>();
        return choices.items().isEmpty() || choices.items().first().id == value.toUuid();
    }
    return value.toInt() <= 1;
}

/// Why frames need not have the size of the mode; empty if they must.
QString otherSizeReason(const PDevice& device) {
    for (const PRole role : {PRole::Region, PRole::Binning, PRole::Rotation}) {
        const PDeviceProperty* const property = PDeviceRoles::plainProperty(device, role);
        if (!isNeutral(property))
            return u"\"%1\" changes the size of frames"_qs.arg(QString::fromLatin1(property->id()));
    }
    return {};
}

QString toSizeText(const QSize& size) {
    return u"%1 x %2"_qs.arg(QString::number(size.width()), QString::number(size.height()));
}

/// Fails if the stream cannot be started; stops it again.
PCheckResult examineStart(PCheckBench& bench) {
    const PStatus started = bench.device().startStream();
    if (started.isOk())
        bench.waitForFrames(1); // whether one comes is the matter of the next rule
    bench.stopStream();
    return PCheckResult::unless(started.reason());
}

PCheckResult examineDelivery(PCheckBench& bench) {
    const auto stop = qScopeGuard([&] { bench.stopStream(); });
    bench.frames()->reset();
    const PStatus started = bench.device().startStream();
    if (!started.isOk())
        return PCheckResult::skipped(started.reason());
    return PCheckResult::unless(
        bench.waitForFrames(framesToCompare)
            ? QString()
            : u"%1 frames arrived in %2 s"_qs.arg(
                  QString::number(bench.frames()->seen().live),
                  QString::number(double(bench.frameTimeout().count()) / 1000)));
}

PCheckResult examineStop(PCheckBench& bench) {
    const PStatus stopped = bench.device().stopStream();
    return PCheckResult::unless(stopped.reason());
}

PCheckResult examineSilence(PCheckBench& bench) {
    bench.device().stopStream();
    const quint64 before = bench.frames()->seen().live;
    bench.wait(lateFrameTime);
    const quint64 late = bench.frames()->seen().live - before;
    return PCheckResult::unless(late == 0 ? QString()
                                          : u"%1 frames arrived after the stop"_qs.arg(late));
}

PCheckResult examineRestart(PCheckBench& bench) {
    bench.device().stopStream();
    bench.device().startStream();
    bench.device().stopStream(); // before its first frame
    const quint64 before = bench.frames()->seen().live;
    const PStatus started = bench.device().startStream();
    if (!started.isOk())
        return PCheckResult::failed(started.reason());
    const bool flows =
        bench.waitFor([&] { return bench.frames()->seen().live > before; }, bench.frameTimeout());
    return PCheckResult::unless(flows ? QString()
                                      : u"no frames arrive after a stop and a start"_qs);
}

PCheckResult examineSize(PCheckBench& bench) {
    const QString reason = otherSizeReason(bench.device());
    if (!reason.isEmpty())
        return PCheckResult::skipped(reason);
    const PDeviceMode mode = bench.device().getCurrentMode();
    const QSize size = bench.frames()->seen().liveSize;
    if (mode.id.isEmpty() || size == QSize(mode.width, mode.height))
        return {};
    return PCheckResult::failed(u"frames have %1 pixels, the mode %2"_qs.arg(
        toSizeText(size), toSizeText({mode.width, mode.height})));
}

PCheckResult examineFormat(PCheckBench& bench) {
    bench.frames()->reset();
    if (!bench.waitForFrames(framesToCompare))
        return PCheckResult::skipped(u"the stream ended"_qs);
    return PCheckResult::unless(bench.frames()->seen().hasMixedForms
                                    ? u"frames of one stream have different pixel formats"_qs
                                    : QString());
}

PCheckResult examineIntactFrames(PCheckBench& bench) {
    bench.frames()->reset();
    if (!bench.waitForFrames(framesToCompare))
        return PCheckResult::skipped(u"the stream ended"_qs);
    return PCheckResult::unless(bench.frames()->seen().hasChanged
                                    ? u"the pixels of a frame changed after it was passed on"_qs
                                    : QString());
}

PCheckResult examineBrokenFrames(PCheckBench& bench) {
    const PFrameLedger before = bench.device().frameLedger();
    if (!bench.waitForFrames(framesToCompare))
        return PCheckResult::skipped(u"the stream ended"_qs);
    const PFrameLedger now = bench.device().frameLedger().since(before);
    for (const PFrameOutcome outcome :
         {PFrameOutcome::BadDepth, PFrameOutcome::BadSize, PFrameOutcome::Failed}) {
        if (now.count(outcome) > 0)
            return PCheckResult::failed(u"%1 of %2 frames: %3"_qs.arg(
                QString::number(now.count(outcome)), QString::number(now.produced),
                PFrameLedger::title(outcome)));
    }
    return {};
}

/// With the longest exposure time of the plain property, which some drivers get wrong by a unit.
PCheckResult examineLongExposure(PCheckBench& bench) {
    const QPointer<PDeviceProperty> time =
        PDeviceRoles::plainProperty(bench.device(), PRole::ExposureTime);
    const QList<QVariant> ends = time == nullptr ? QList<QVariant>() : PCheckValues::ends(*time);
    if (ends.isEmpty())
        return PCheckResult::skipped(u"the camera has no exposure time with a range"_qs);
    if (time->isUnread())
        return PCheckResult::skipped(u"the camera does not report its exposure time"_qs);
    const QVariant before = time->valueInner();
    bench.stopStream();
    time->setValue(ends.last());
    const auto putBack = qScopeGuard([&] {
        bench.stopStream();
        if (bench.isPresent() && time != nullptr)
            bench.attempt([&] { time->setValue(before); });
    });
    const PStatus started = bench.device().startStream();
    if (!started.isOk())
        return PCheckResult::skipped(started.reason());
    return PCheckResult::unless(
        bench.waitForFrames(1) ? QString() : u"no frame arrives with the longest exposure time"_qs);
}

} // namespace

QList<PCheckRule> PCheckRules::stream() {
    const QStringList frames{u"stream.starts"_qs, u"stream.delivers"_qs};
    const QString converter = u"Look at how the driver makes its PImage."_qs;
    return {
        {u"stream.starts"_qs,
         u"The stream of a linked camera starts in each mode."_qs,
         u"See tryStartStream(), and what the SDK says."_qs,
         Where::Modes,
         For::Camera,
         &examineStart,
         {u"open.link"_qs}},
        {u"stream.delivers"_qs,
         u"A stream that was started delivers frames."_qs,
         u"See whether the SDK's callback is called, and ends in processFrameImage()."_qs,
         Where::Modes,
         For::Camera,
         &examineDelivery,
         {u"stream.starts"_qs}},
        {u"stream.stops"_qs, u"Stopping a stream succeeds."_qs, u"See tryStopStream()."_qs,
         Where::Streaming, For::Camera, &examineStop, frames},
        {u"stream.silent-after-stop"_qs,
         u"No frame arrives once the stream was stopped: the host may have deleted what takes it."_qs,
         u"In tryStopStream() wait for a callback in progress, and join the thread."_qs,
         Where::Streaming, For::Camera, &examineSilence, frames},
        {u"stream.restarts"_qs,
         u"A stream that was stopped, even before its first frame, can be started again at once."_qs,
         u"See whether a stop leaves something behind that the next start finds."_qs,
         Where::Streaming, For::Camera, &examineRestart,
         frames + QStringList{u"stream.silent-after-stop"_qs}},
        {u"stream.frame-size"_qs,
         u"Frames have the size of the mode if region, binning and rotation leave it."_qs,
         converter, Where::Streaming, For::Camera, &examineSize, frames},
        {u"stream.frame-format"_qs,
         u"All frames of a stream have one pixel format: a recording is made for the first."_qs,
         converter, Where::Streaming, For::Camera, &examineFormat, frames},
        {u"stream.intact-frames"_qs,
         u"A frame that was passed on does not change any more: hosts share its pixels."_qs,
         u"Fill a new PImage for each frame, and do not keep a pointer to its pixels."_qs,
         Where::Streaming, For::Camera, &examineIntactFrames, frames},
        {u"stream.no-broken-frames"_qs,
         u"The driver understands all frames that its camera sends."_qs,
         u"See where the driver calls reportDroppedFrames()."_qs, Where::Streaming, For::Camera,
         &examineBrokenFrames, frames},
        {u"stream.longest-exposure"_qs,
         u"Frames arrive with the longest exposure time that the camera offers."_qs,
         u"Compare the unit of the range with that of the SDK; give the SDK enough time."_qs,
         Where::Modes, For::Camera, &examineLongExposure, frames, u"long"_qs},
    };
}
