// SPDX-License-Identifier: MIT
#include <python/frame/PPythonTrigger.h>

#include <python/host/PPybind.h>
#include <python/host/PPythonSession.h>

#include <PCd/device/PDeviceRoles.h>
#include <PCd/property/PDeviceProperty.h>

#include <PCore/work/PGuardedCall.h>

namespace {

/// Longer runs have no end of their own: the stream ends them.
int toRunLength(std::optional<quint64> frames) {
    return int(
        std::min<quint64>(frames.value_or(PTriggerControl::endless), PTriggerControl::endless));
}

/// Frames are stamped with the plain settings, which are not read again by themselves when the
/// composite one changes the time.
void readExposure(const PDevice& device) {
    if (PDeviceProperty* const time = PDeviceRoles::plainProperty(device, PRole::ExposureTime))
        time->updateValueFromDevice();
}

PDeviceProperty* findTrigger(const PDevice& device) {
    return PDeviceRoles::compositeProperty(device, PRole::Triggered);
}

} // namespace

PPythonTrigger::PPythonTrigger(std::shared_ptr<PPythonSession> session, const Plan& plan,
                               std::optional<quint64> frames)
    : m_session(std::move(session))
    , m_control(std::make_unique<PTriggerControl>(m_session->device()))
    , m_plan(plan)
    , m_frames(toRunLength(frames)) {
    if (PDeviceProperty* const property = findTrigger(m_session->device())) {
        property->updateValueFromDevice(); // automatic exposure may have moved
        m_before = property->reportedValue();
    }
    const auto source =
        m_plan.external ? PTriggerControl::Source::External : PTriggerControl::Source::Software;
    // The number that panels show has a smaller range than runs: firing has the one that counts.
    m_session->check(m_control->prepare(source, m_plan.exposure, 1), "RefusedError");
    readExposure(m_session->device());
}

void PPythonTrigger::begin() {
    m_session->device(); // throws if it was unplugged
    if (!m_plan.external)
        m_session->check(m_control->fire(m_frames), "RefusedError");
}

void PPythonTrigger::end() noexcept {
    if (m_session->isOpen() && !m_plan.external)
        PGuardedCall::logged([this] { m_control->fire(0); });
}

void PPythonTrigger::restore() noexcept {
    if (!m_session->isOpen() || !m_before.isValid())
        return;
    PGuardedCall::logged([this] {
        if (PDeviceProperty* const property = findTrigger(m_session->device()))
            property->setValue(m_before);
        readExposure(m_session->device());
    });
}

std::chrono::milliseconds PPythonTrigger::exposure() const {
    if (!m_session->isOpen())
        return {};
    return std::chrono::ceil<std::chrono::milliseconds>(m_control->exposure());
}
