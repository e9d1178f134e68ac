// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckBench.h>
#include <apps/pcdctl/check/bench/PProcessUsage.h>
#include <apps/pcdctl/check/rules/PCheckRules.h>

#include <PCd/device/PDeviceRegister.h>
#include <PCd/property/PDeviceProperty.h>

#include <algorithm>
#include <optional>

namespace {

using Where = PCheckRule::Where;
using For = PCheckRule::For;
using Milliseconds = PCheckBench::Milliseconds;

constexpr Milliseconds lateTime{150};      // for frames that should not come any more
constexpr Milliseconds cableEndTime{2000}; // of what was told to end
constexpr int warmUpCables = 1;
constexpr int measuredCables = 4;

/// Of modes and properties.
QList<QByteArray> collectDeviceIds(PDevice& device) {
    QList<QByteArray> ids;
    for (const PDeviceMode& mode : device.getSupportModes())
        ids.append(mode.id);
    for (const PDeviceProperty* property : device.supportProperties())
        ids.append(property->id());
    return ids;
}

/// As a window does, until it learns that the camera is gone.
void useDevice(PCheckBench& bench, PDevice& device) {
    device.getSupportModes();
    device.getCurrentMode();
    for (PDeviceProperty* property : device.supportProperties()) {
        bench.touch();
        property->readFromDevice();
    }
    bench.touch();
    device.startStream();
    device.stopStream();
}

/// Unplugs the camera and plugs it in again, and keeps what was seen.
class Replug {
public:
    /// `use`: what to do with the camera while it is gone and its device still exists.
    explicit Replug(
        PCheckBench& bench, void (*use)(PCheckBench&, PDevice&) = [](PCheckBench&, PDevice&) {})
        : m_bench(bench)
        , m_register(bench.deviceRegister())
        , m_use(use)
        , m_id(bench.device().deviceId(false))
        , m_ids(collectDeviceIds(bench.device())) {
        QObject::connect(&m_register, &PDeviceRegister::deviceRemoved, &m_context,
                         [this](PDevice* device) { lookAtRemoved(*device); });
    }

    /// Fails if there is no way to unplug the camera.
    PStatus run() {
        const PStatus unplugged = m_bench.cable().plug(m_register, false);
        if (!unplugged.isOk())
            return unplugged;
        // A driver may notice it later, and calls reach a camera that is not there.
        if (m_bench.isPresent())
            m_bench.attempt([this] { m_use(m_bench, m_bench.device()); });
        m_isNoticed = waitUntilListed(false);
        m_bench.waitAnyway([] { return false; }, lateTime);
        m_frames = m_bench.frames()->seen().live;
        m_bench.cable().plug(m_register, true);
        m_isBack = waitUntilListed(true);
        if (m_isBack && !m_bench.isPresent())
            m_bench.replaceDevice(m_register.findDevice(m_id));
        return PStatus::Ok;
    }

    // What is wrong; empty if nothing is.
    QString findNothing() const { return {}; }
    QString findRemovalProblem() const {
        return m_isNoticed ? QString() : u"the camera is still in the list"_qs;
    }
    QString findReturnProblem() const {
        return m_isBack ? QString() : u"no camera with the same id has appeared"_qs;
    }
    /// That it did not go, or did not come back.
    QString findCycleProblem() const {
        const QString removal = findRemovalProblem();
        return removal.isEmpty() ? findReturnProblem() : removal;
    }
    QString findLateFrames() const {
        // At most as many: counting begins from zero with each stream.
        const quint64 late = m_frames - std::min(m_framesAtRemoval.value_or(m_frames), m_frames);
        return late == 0 ? QString()
                         : u"%1 frames arrived after the camera had left the list"_qs.arg(late);
    }
    QString findOpeningProblem() const {
        if (!m_bench.linked().isOk())
            return m_bench.linked().reason();
        return collectDeviceIds(m_bench.device()) == m_ids
                   ? QString()
                   : u"it has other modes or properties than before"_qs;
    }

private:
    bool waitUntilListed(bool listed) {
        return m_bench.waitAnyway(
            [&] { return (m_register.findDevice(m_id) != nullptr) == listed; },
            m_bench.cable().noticeTime(m_register, m_bench.timeout()));
    }

    void lookAtRemoved(PDevice& device) {
        if (device.deviceId(false) != m_id)
            return;
        m_framesAtRemoval = m_bench.frames()->seen().live;
        // The driver emits this: nothing may be thrown through it.
        m_bench.attempt([&] { m_use(m_bench, device); });
    }

    PCheckBench& m_bench;
    PDeviceRegister& m_register;
    void (*const m_use)(PCheckBench&, PDevice&);
    const QByteArray m_id;
    const QList<QByteArray> m_ids; ///< of modes and properties
    std::optional<quint64> m_framesAtRemoval;
    quint64 m_frames = 0;
    bool m_isNoticed = false;
    bool m_isBack = false;
    QObject m_context; ///< last: no signal arrives once this is gone
};

using Problem = QString (Replug::*)() const;

/// Unplugs once, and plugs in again. With the first problem the rule cannot be examined; with the
/// second one it is broken.
PCheckResult judge(Replug& replug, Problem obstacle, Problem problem) {
    const PStatus unplugged = replug.run();
    if (!unplugged.isOk())
        return PCheckResult::skipped(unplugged.reason());
    const QString reason = (replug.*obstacle)();
    return reason.isEmpty() ? PCheckResult::unless((replug.*problem)())
                            : PCheckResult::skipped(reason);
}

template <Problem obstacle, Problem problem>
PCheckResult examineIdle(PCheckBench& bench) {
    Replug replug(bench);
    return judge(replug, obstacle, problem);
}

template <Problem obstacle, Problem problem>
PCheckResult examineInStream(PCheckBench& bench) {
    const PStatus stream = bench.ensureStream();
    if (!stream.isOk())
        return PCheckResult::skipped(stream.reason());
    Replug replug(bench);
    return judge(replug, obstacle, problem);
}

/// What the driver throws at the calls is what fails.
PCheckResult examineCalls(PCheckBench& bench) {
    Replug replug(bench, useDevice);
    return judge(replug, &Replug::findRemovalProblem, &Replug::findNothing);
}

PCheckResult examineStreamAfterReturn(PCheckBench& bench) {
    Replug replug(bench);
    const PCheckResult returned = judge(replug, &Replug::findCycleProblem, &Replug::findNothing);
    if (returned.state != PCheckResult::State::Passed)
        return returned;
    const PStatus stream = bench.ensureStream();
    bench.stopStream();
    return PCheckResult::unless(stream.reason());
}

/// Fails if there is no way to unplug the camera, or if it did not go and come back.
PStatus replugOften(PCheckBench& bench, int count) {
    for (int i = 0; i < count; ++i) {
        Replug replug(bench);
        const PCheckResult result = judge(replug, &Replug::findCycleProblem, &Replug::findNothing);
        if (result.state != PCheckResult::State::Passed)
            return PStatus::failure(result.text);
    }
    return PStatus::Ok;
}

PCheckResult examineRest(PCheckBench& bench) {
    if (!bench.cable().isAutomatic(bench.deviceRegister()))
        return PCheckResult::skipped(u"the user would have to unplug the camera five times"_qs);
    const PStatus warm = replugOften(bench, warmUpCables);
    if (!warm.isOk())
        return PCheckResult::skipped(warm.reason());
    const PProcessUsage before = PProcessUsage::read();
    const PStatus measured = replugOften(bench, measuredCables);
    if (!measured.isOk())
        return PCheckResult::skipped(measured.reason());
    const auto findRest = [&] {
        const PProcessUsage now = PProcessUsage::read();
        QStringList texts{now.describeThreads(before, measuredCables),
                          now.describeFiles(before, measuredCables),
                          now.describeMemory(before, measuredCables)};
        texts.removeAll(QString());
        return texts.join(u"; "_qs);
    };
    bench.waitAnyway([&] { return findRest().isEmpty(); }, cableEndTime);
    return PCheckResult::unless(findRest());
}

PCheckRule makeCableRule(const QString& id, const QString& reason, const QString& hint,
                         PCheckResult (*examine)(PCheckBench&), const QStringList& needs) {
    return {id, reason, hint, Where::Once, For::Camera, examine, needs, u"unplug"_qs};
}

} // namespace

QList<PCheckRule> PCheckRules::hotPlug() {
    const QString search =
        u"Call updateDevices() when the SDK reports a change; see aliveDevices()."_qs;
    const QString again = u"Open the camera again; the old session ended with the cable."_qs;
    const QStringList both{u"hot-plug.noticed"_qs, u"hot-plug.returns"_qs};
    return {
        makeCableRule(u"hot-plug.noticed"_qs, u"A camera that was unplugged leaves the list."_qs,
                      search, &examineIdle<&Replug::findNothing, &Replug::findRemovalProblem>, {}),
        makeCableRule(
            u"hot-plug.returns"_qs,
            u"A camera that was plugged in again appears with the id that it had: hosts go on with "
            "it."_qs,
            search, &examineIdle<&Replug::findRemovalProblem, &Replug::findReturnProblem>,
            both.mid(0, 1)),
        makeCableRule(
            u"hot-plug.calls-return"_qs,
            u"Using a camera that was unplugged returns without an exception: hosts learn of it a "
            "moment later."_qs,
            u"Check what the SDK returns; without its session a reading fails, and no more."_qs,
            &examineCalls, both),
        makeCableRule(
            u"hot-plug.while-streaming"_qs,
            u"A camera that is unplugged in a stream leaves the list."_qs,
            u"Notice in the frame callback that the camera is gone, and post one call."_qs,
            &examineInStream<&Replug::findNothing, &Replug::findRemovalProblem>, both),
        makeCableRule(
            u"hot-plug.stream-ends"_qs,
            u"No frame arrives from a camera that has left the list: its stream has ended."_qs,
            u"In tryStopStream() end the thread that sends frames, also without the camera."_qs,
            &examineInStream<&Replug::findRemovalProblem, &Replug::findLateFrames>,
            both + QStringList{u"hot-plug.while-streaming"_qs, u"stream.silent-after-stop"_qs}),
        makeCableRule(u"hot-plug.opens-again"_qs,
                      u"A camera that was plugged in again can be linked, and has the modes and "
                      "properties that it had."_qs,
                      again, &examineIdle<&Replug::findCycleProblem, &Replug::findOpeningProblem>,
                      both + QStringList{u"open.link"_qs}),
        makeCableRule(u"hot-plug.streams-again"_qs,
                      u"A camera that was plugged in again can stream."_qs, again,
                      &examineStreamAfterReturn,
                      both + QStringList{u"stream.delivers"_qs, u"hot-plug.opens-again"_qs}),
        makeCableRule(
            u"hot-plug.nothing-left"_qs,
            u"Unplugging a camera and plugging it in again leaves nothing behind: no thread, no "
            "open file, and at most 1 MiB of memory each time."_qs,
            u"Close the session and end its threads in the destructor of the device."_qs,
            &examineRest, both),
    };
}
