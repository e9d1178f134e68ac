// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckBench.h>
#include <apps/pcdctl/check/rules/PCheckRules.h>

#include <apps/pcdctl/cli/PCtlOutput.h>

#include <PCd/device/PDeviceRegister.h>

namespace {

using Where = PCheckRule::Where;
using For = PCheckRule::For;
using Milliseconds = PCheckBench::Milliseconds;

constexpr Milliseconds noticeTime{3000}; // drivers may wait until a burst of events has ended
constexpr Milliseconds userTime{60000};

const char* const plugMethod = "setPlugged";

/// Plugs the camera in and out: by a method of its register if there is one, else by the user.
class Cable {
public:
    explicit Cable(PDeviceRegister& deviceRegister)
        : m_register(deviceRegister)
        , m_hasMethod(hasMethod(deviceRegister)) {}

    static bool hasMethod(const PDeviceRegister& deviceRegister) {
        return deviceRegister.metaObject()->indexOfMethod("setPlugged(bool)") >= 0;
    }

    /// Returns how long to wait until the driver should have noticed.
    Milliseconds plug(bool in) {
        if (m_hasMethod) {
            QMetaObject::invokeMethod(&m_register, plugMethod, Q_ARG(bool, in));
            return noticeTime;
        }
        PCtlOutput::printMessage(in ? u"Now plug the camera in again (within 60 s)."_qs
                                    : u"Now unplug the camera (within 60 s)."_qs);
        return userTime;
    }

private:
    PDeviceRegister& m_register;
    const bool m_hasMethod;
};

/// Unplugs and plugs in again; what is wrong, if anything.
class Replug {
public:
    explicit Replug(PCheckBench& bench)
        : m_bench(bench)
        , m_register(bench.deviceRegister())
        , m_id(bench.device().deviceId(false))
        , m_cable(m_register) {}

    /// False if the camera is still in the list.
    bool unplug() {
        const Milliseconds time = m_cable.plug(false);
        return m_bench.waitAnyway([this] { return m_register.findDevice(m_id) == nullptr; }, time);
    }
    /// False if no camera of this id has appeared.
    bool plug() {
        const Milliseconds time = m_cable.plug(true);
        const bool isBack =
            m_bench.waitAnyway([this] { return m_register.findDevice(m_id) != nullptr; }, time);
        if (isBack && !m_bench.isPresent())
            m_bench.replaceDevice(m_register.findDevice(m_id));
        return isBack;
    }

private:
    PCheckBench& m_bench;
    PDeviceRegister& m_register;
    const QByteArray m_id;
    Cable m_cable;
};

/// Empty if there is a way to unplug the camera.
QString reasonNotToUnplug(PCheckBench& bench) {
    return bench.isSimulated() && !Cable::hasMethod(bench.deviceRegister())
               ? u"simulated, and its register has no method setPlugged(bool)"_qs
               : QString();
}

PCheckResult examineUnplugging(PCheckBench& bench) {
    const QString reason = reasonNotToUnplug(bench);
    if (!reason.isEmpty())
        return PCheckResult::skipped(reason);
    Replug replug(bench);
    const bool isNoticed = replug.unplug();
    replug.plug();
    return PCheckResult::unless(isNoticed ? QString() : u"the camera is still in the list"_qs);
}

PCheckResult examineReturn(PCheckBench& bench) {
    const QString reason = reasonNotToUnplug(bench);
    if (!reason.isEmpty())
        return PCheckResult::skipped(reason);
    Replug replug(bench);
    replug.unplug();
    return PCheckResult::unless(replug.plug() ? QString()
                                              : u"no camera with the same id has appeared"_qs);
}

PCheckResult examineUnplugInStream(PCheckBench& bench) {
    const QString reason = reasonNotToUnplug(bench);
    if (!reason.isEmpty())
        return PCheckResult::skipped(reason);
    const PStatus stream = bench.ensureStream();
    if (!stream.isOk())
        return PCheckResult::skipped(stream.reason());
    Replug replug(bench);
    const bool isNoticed = replug.unplug();
    replug.plug();
    return PCheckResult::unless(isNoticed ? QString() : u"the camera is still in the list"_qs);
}

PCheckResult examineStreamAfterReturn(PCheckBench& bench) {
    const QString reason = reasonNotToUnplug(bench);
    if (!reason.isEmpty())
        return PCheckResult::skipped(reason);
    Replug replug(bench);
    if (!replug.unplug() || !replug.plug())
        return PCheckResult::skipped(u"the camera did not go and come back"_qs);
    const PStatus stream = bench.ensureStream();
    bench.stopStream();
    return PCheckResult::unless(stream.reason());
}

} // namespace

QList<PCheckRule> PCheckRules::hotPlug() {
    const QString hazard = u"unplug"_qs;
    const QString search =
        u"Call updateDevices() when the SDK reports a change; see aliveDevices()."_qs;
    return {
        {u"hot-plug.noticed"_qs,
         u"A camera that was unplugged leaves the list."_qs,
         search,
         Where::Once,
         For::Camera,
         &examineUnplugging,
         {},
         hazard},
        {u"hot-plug.returns"_qs,
         u"A camera that was plugged in again appears with the id that it had: hosts go on with "
         "it."_qs,
         search,
         Where::Once,
         For::Camera,
         &examineReturn,
         {u"hot-plug.noticed"_qs},
         hazard},
        {u"hot-plug.while-streaming"_qs,
         u"A camera that is unplugged in a stream leaves the list."_qs,
         u"Notice in the frame callback that the camera is gone, and post one call."_qs,
         Where::Once,
         For::Camera,
         &examineUnplugInStream,
         {u"hot-plug.noticed"_qs, u"hot-plug.returns"_qs},
         hazard},
        {u"hot-plug.streams-again"_qs,
         u"A camera that was plugged in again can stream."_qs,
         u"Open the camera again; the old session ended with the cable."_qs,
         Where::Once,
         For::Camera,
         &examineStreamAfterReturn,
         {u"stream.delivers"_qs, u"hot-plug.noticed"_qs, u"hot-plug.returns"_qs},
         hazard},
    };
}
