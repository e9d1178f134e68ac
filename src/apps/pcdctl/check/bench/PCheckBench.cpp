// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckBench.h>

#include <apps/pcdctl/check/bench/PCheckRule.h>
#include <apps/pcdctl/check/bench/PCheckValues.h>

#include <PCd/device/PDeviceRegister.h>
#include <PCd/device/PDeviceRoles.h>
#include <PCd/property/PPropertyRoles.h>

#include <QElapsedTimer>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {

constexpr int exposuresToWait = 4; // a frame may have begun before, and two may be on their way

} // namespace

PCheckBench::PCheckBench(PDeviceManager& manager, PDevice* device, PHangWatch& watch,
                         Milliseconds timeout)
    : m_device(device)
    , m_watch(watch)
    , m_timeout(timeout)
    , m_settings([this] { touch(); }) {
    connect(&manager, &PDeviceManager::deviceRemoved, this, [this](const PDevice* removed) {
        if (removed == m_device)
            m_device = nullptr;
    });
}

PCheckBench::~PCheckBench() {
    close();
}

PStatus PCheckBench::open() {
    QElapsedTimer clock;
    clock.start();
    m_linked = device().link();
    m_linkTook = Milliseconds(clock.elapsed());
    device().addFrameSink(m_frames);
    device().supportProperties();
    m_modes = device().getSupportModes();
    return m_settings.take(device());
}

void PCheckBench::close() {
    if (!isPresent())
        return;
    m_device->removeFrameSink(m_frames);
    attempt([this] { m_device->unlink(); });
    m_device = nullptr;
}

void PCheckBench::attempt(const std::function<void()>& call) {
    QString problem;
    try {
        call();
    } catch (const std::exception& error) {
        problem = PCheckResult::describeException(error.what());
    } catch (...) { // drivers may throw anything
        problem = PCheckResult::describeException(nullptr);
    }
    if (m_problem.isEmpty())
        m_problem = problem;
}

QString PCheckBench::takeProblem() {
    return std::exchange(m_problem, QString());
}

PDevice& PCheckBench::device() const {
    touch();
    if (m_device == nullptr)
        throw std::runtime_error("the camera is gone");
    return *m_device;
}

PDeviceRegister& PCheckBench::deviceRegister() const {
    auto* const found = qobject_cast<PDeviceRegister*>(device().parent());
    if (found == nullptr)
        throw std::runtime_error("the camera has left its register");
    return *found;
}

void PCheckBench::replaceDevice(PDevice* device) {
    m_device = device;
    m_linked = this->device().link();
    this->device().addFrameSink(m_frames);
    this->device().supportProperties();
    m_state = {};
    m_stream = PStatus::Ok;
    m_inert.clear();
}

PDeviceProperty& PCheckBench::property() const {
    if (m_property >= properties().size())
        throw std::runtime_error("the property is gone");
    return *properties()[m_property];
}

PStatus PCheckBench::enter(const PCheckState& state) {
    if (!(state == m_state)) {
        stopStream();
        m_settings.putBack(device());
        if (state.mode)
            device().setMode(*state.mode);
        else
            m_settings.putModeBack(device());
        m_state = state;
    }
    if (state.isStreaming)
        return ensureStream();
    stopStream();
    return PStatus::Ok;
}

void PCheckBench::putBack() {
    stopStream();
    if (!isPresent()) // it may have gone while the stream ended
        return;
    attempt([this] { m_settings.putModeBack(device()); });
    attempt([this] { m_settings.putBack(device()); });
    m_state = {};
}

PStatus PCheckBench::ensureStream() {
    if (device().isStreaming() || !m_stream.isOk())
        return m_stream;
    m_stream = startStream();
    if (!m_stream.isOk())
        device().stopStream();
    return m_stream;
}

PStatus PCheckBench::startStream() {
    m_frames->reset();
    const PStatus started = device().startStream();
    if (!started.isOk())
        return PStatus::failure(u"no stream: "_qs + started.reason());
    return waitForFrames(1) ? PStatus(PStatus::Ok) : PStatus::failure(u"no frames arrive"_qs);
}

void PCheckBench::stopStream() {
    if (!isPresent() || !m_device->isStreaming())
        return;
    attempt([this] { m_device->stopStream(); });
    m_loop.drain(
        [this] {
            touch();
            return !isPresent() || m_device->frameLedger().waiting == 0;
        },
        m_timeout);
}

bool PCheckBench::waitForFrames(quint64 count) {
    const quint64 before = m_frames->seen().live;
    return waitFor([&] { return m_frames->seen().live >= before + count; }, frameTimeout());
}

bool PCheckBench::waitFor(const std::function<bool()>& predicate, Milliseconds atMost) {
    bool holds = false;
    waitAnyway(
        [&] {
            holds = isPresent() && predicate();
            return holds || !isPresent();
        },
        atMost);
    return holds;
}

bool PCheckBench::waitAnyway(const std::function<bool()>& predicate, Milliseconds atMost) {
    return m_loop.waitFor(
        [&] {
            touch();
            return predicate();
        },
        atMost);
}

void PCheckBench::wait(Milliseconds time) {
    waitFor([] { return false; }, time);
}

PCheckBench::Milliseconds PCheckBench::frameTimeout() const {
    const double exposure = PDeviceRoles::of(device()).number(PRole::ExposureTime).value_or(0);
    return m_timeout + exposuresToWait * Milliseconds(std::max(0, int(exposure)));
}

bool PCheckBench::isDriven(const PDeviceProperty& property) const {
    if (!device().isStreaming() || !PDeviceRoles::of(device()).isOn(PRole::AutoExposure))
        return false;
    const PRoleBindings roles = PPropertyRoles::of(property);
    return std::any_of(roles.begin(), roles.end(), [](const PRoleBinding& binding) {
        return binding.role == PRole::ExposureTime || binding.role == PRole::Gain;
    });
}

bool PCheckBench::isInert(PDeviceProperty& property) {
    const auto known = m_inert.constFind(&property);
    if (known != m_inert.constEnd())
        return *known;
    const QVariant before = property.readFromDevice().value;
    if (!before.isValid() || !PCheckSettings::maySet(property) ||
        !PCheckValues::isZero(before, property.rangeInner()))
        return false;
    bool hasChanged = false;
    for (const QVariant& value : PCheckValues::inside(property) + PCheckValues::ends(property)) {
        property.setValue(value);
        touch();
        const PDeviceProperty::Reading has = property.readFromDevice();
        touch();
        hasChanged = hasChanged || !PCheckValues::isSame(before, has.value, has.range);
    }
    property.setValue(before);
    m_inert.insert(&property, !hasChanged);
    return !hasChanged;
}

bool PCheckBench::maySet(PDeviceProperty& property) {
    const bool canSetBack = m_settings.has(properties().indexOf(&property)) && !property.isUnread();
    return canSetBack && PCheckSettings::maySet(property) &&
           PCheckValues::areComparable(property) && !isDriven(property) &&
           !(device().isStreaming() && PCheckValues::isTime(property)) && !isInert(property);
}

#include "moc_PCheckBench.cpp"
