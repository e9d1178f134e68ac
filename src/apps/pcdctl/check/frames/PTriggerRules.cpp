// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckBench.h>
#include <apps/pcdctl/check/rules/PCheckRules.h>

#include <apps/common/camera/PTriggerControl.h>

#include <PCd/device/PDeviceRoles.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyRoles.h>
#include <PCd/property/value/PCompositeFields.h>

#include <QPointer>

namespace {

using Where = PCheckRule::Where;
using For = PCheckRule::For;
using Milliseconds = PCheckBench::Milliseconds;

constexpr Milliseconds surplusTime{100}; // for frames that nobody requested
constexpr int triggeredFrames = 3;
constexpr std::chrono::microseconds triggeredExposure{1000};

PCheckResult examineWithoutTrigger(PCheckBench& bench) {
    if (bench.device().isSupportSoftwareTrigger())
        return PCheckResult::skipped(u"the camera has a software trigger"_qs);
    return PCheckResult::unless(bench.device().tryFireSoftwareTrigger()
                                    ? u"tryFireSoftwareTrigger() reports success"_qs
                                    : QString());
}

PCheckResult examineTriggerRoles(PCheckBench& bench) {
    const PDeviceProperty* const property =
        PDeviceRoles::property(bench.device(), PRole::Triggered);
    if (property == nullptr)
        return PCheckResult::skipped(u"the camera has no trigger"_qs);
    const PRoleValue value = PPropertyRoles::value(*property);
    const QByteArray fire = PPropertyRoles::method(*property, PRole::FireTrigger) + "(int)";
    QStringList missing;
    if (value.hasPlain(PRole::Triggered))
        missing.append(u"a composite value"_qs);
    if (!value.has(PRole::TriggerTime))
        missing.append(u"the role TriggerTime"_qs);
    if (property->metaObject()->indexOfMethod(fire) < 0)
        missing.append(u"a method bool(int) with the role FireTrigger"_qs);
    return PCheckResult::unless(missing.isEmpty()
                                    ? QString()
                                    : u"\"%1\" lacks %2"_qs.arg(QString::fromLatin1(property->id()),
                                                                missing.join(u", "_qs)));
}

/// Puts the camera into trigger mode, streaming, until the guard is destroyed.
class TriggerMode {
public:
    explicit TriggerMode(PCheckBench& bench)
        : m_bench(bench)
        , m_property(PDeviceRoles::compositeProperty(bench.device(), PRole::Triggered))
        , m_control(bench.device()) {
        if (m_property == nullptr)
            return;
        m_before = m_property->readFromDevice().value;
        if (!m_before.isValid()) {
            m_prepared = PStatus::failure(u"the camera did not report its trigger settings"_qs);
            return;
        }
        m_prepared = m_control.prepare(PTriggerControl::Source::Software, triggeredExposure,
                                       triggeredFrames);
        if (m_prepared.isOk())
            m_prepared = bench.device().startStream();
        // Only this shows whether this camera can be triggered: what does not depend on the model
        // is the same for all cameras of a driver.
        if (m_prepared.isOk())
            m_prepared = m_control.fire(1);
        if (m_prepared.isOk())
            bench.waitForFrames(1);
        bench.wait(surplusTime);
    }
    ~TriggerMode() {
        if (!m_before.isValid())
            return;
        m_bench.stopStream();
        if (isPresent())
            m_property->setValue(m_before);
    }
    TriggerMode(const TriggerMode&) = delete;
    TriggerMode& operator=(const TriggerMode&) = delete;

    QString problem() const {
        if (!m_bench.isPresent())
            return u"the camera is gone"_qs;
        return m_property == nullptr ? u"the camera has no trigger"_qs : m_prepared.reason();
    }
    /// Only if there is no problem.
    PStatus fire() { return m_control.fire(triggeredFrames); }

private:
    bool isPresent() const { return m_bench.isPresent() && m_property != nullptr; }

    PCheckBench& m_bench;
    QPointer<PDeviceProperty> m_property;
    PTriggerControl m_control;
    QVariant m_before;
    PStatus m_prepared;
};

PCheckResult examineQuietTrigger(PCheckBench& bench) {
    TriggerMode mode(bench);
    if (!mode.problem().isEmpty())
        return PCheckResult::skipped(mode.problem());
    const quint64 before = bench.frames()->seen().live;
    bench.wait(surplusTime);
    const quint64 count = bench.frames()->seen().live - before;
    return PCheckResult::unless(count == 0 ? QString()
                                           : u"%1 frames arrived without a trigger"_qs.arg(count));
}

PCheckResult examineFiring(PCheckBench& bench) {
    TriggerMode mode(bench);
    if (!mode.problem().isEmpty())
        return PCheckResult::skipped(mode.problem());
    const quint64 before = bench.frames()->seen().live;
    const PStatus fired = mode.fire();
    if (!fired.isOk())
        return PCheckResult::failed(fired.reason());
    bench.waitForFrames(triggeredFrames);
    bench.wait(surplusTime);
    const quint64 count = bench.frames()->seen().live - before;
    return PCheckResult::unless(
        count == triggeredFrames ? QString()
                                 : u"%1 frames were triggered, %2 arrived"_qs.arg(
                                       QString::number(triggeredFrames), QString::number(count)));
}

PCheckResult examineVideoAfterTrigger(PCheckBench& bench) {
    {
        const TriggerMode mode(bench);
        if (!mode.problem().isEmpty())
            return PCheckResult::skipped(mode.problem());
    }
    const PStatus started = bench.device().startStream();
    const bool flows = started.isOk() && bench.waitForFrames(2);
    bench.stopStream();
    return PCheckResult::unless(flows ? QString() : u"no live frames arrive after trigger mode"_qs);
}

} // namespace

QList<PCheckRule> PCheckRules::trigger() {
    const QString roles = u"See docs/own-driver.md on roles, and PRole for those of triggers."_qs;
    return {
        {u"trigger.refused-without"_qs,
         u"A camera without a software trigger refuses to fire it."_qs,
         u"Override isSupportSoftwareTrigger() too."_qs, Where::Once, For::Camera,
         &examineWithoutTrigger},
        {u"trigger.roles"_qs,
         u"What can be triggered has all roles of triggered capture: programs control it by them."_qs,
         roles, Where::Once, For::Camera, &examineTriggerRoles},
        {u"trigger.quiet"_qs,
         u"In trigger mode no frame arrives without a trigger."_qs,
         u"See what the setter of the property with the role Triggered sends."_qs,
         Where::Modes,
         For::Camera,
         &examineQuietTrigger,
         {u"stream.delivers"_qs, u"trigger.roles"_qs}},
        {u"trigger.frames"_qs,
         u"A trigger yields the number of frames that was requested."_qs,
         u"See the method with the role FireTrigger."_qs,
         Where::Modes,
         For::Camera,
         &examineFiring,
         {u"stream.delivers"_qs, u"stream.no-broken-frames"_qs, u"trigger.roles"_qs,
          u"trigger.quiet"_qs}},
        {u"trigger.video-again"_qs,
         u"After trigger mode the camera streams freely again."_qs,
         u"See what the setter of the property with the role Triggered sends."_qs,
         Where::Modes,
         For::Camera,
         &examineVideoAfterTrigger,
         {u"stream.delivers"_qs, u"trigger.roles"_qs}},
    };
}
