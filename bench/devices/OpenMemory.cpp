// SPDX-License-Identifier: MIT
#include <devices/DeviceFigures.h>
#include <devices/OpenCameras.h>
#include <devices/UsedMemory.h>

#include <toupcam/toupcam.h>

#include <QCoreApplication>

#include <stdexcept>

namespace {

constexpr int held = 6; // opened at a time, by the SDK's client and by the host
constexpr int available = 128;

using Call = void();
using Plug = int(const char*);
using Open = HToupcam(const char*);
using Used = double (*)();

/// More and more cameras are opened and stay open: what was freed before cannot be taken again.
class MoreCameras {
public:
    explicit MoreCameras(Used used)
        : m_used(used) {
        m_cameras.replace(available, false);
        m_plug = m_cameras.sdkFunction<Plug>("ToupcamSim_plug");
        m_open = m_cameras.sdkFunction<Open>("Toupcam_Open");
        m_clearJournal = m_cameras.sdkFunction<Call>("ToupcamSim_clearJournal");
    }

    /// KiB of an open camera without the session that the simulated SDK keeps for it.
    double measure() {
        const double cost = (measureDevices() - measureSessions()) / held;
        return cost > 0 ? cost : -1; // else it has taken what was freed
    }

private:
    double measureSessions() {
        const int first = plugMore();
        const double before = read();
        for (int number = first; number < first + held; ++number)
            m_open(makeId(number).constData());
        return read() - before;
    }

    double measureDevices() {
        plugMore();
        const auto known = m_cameras.devices().size();
        const double before = read();
        m_cameras.open();
        QCoreApplication::processEvents();
        if (m_cameras.devices().size() != known + held)
            throw std::runtime_error("not all cameras could be opened");
        return read() - before;
    }

    /// The number of the first that is added.
    int plugMore() {
        const int first = m_plugged + 1;
        while (m_plugged < first + held - 1)
            m_plug(makeId(++m_plugged).constData());
        return first;
    }

    /// Without the journal, in which the simulated SDK notes every call.
    double read() const {
        m_clearJournal();
        return m_used();
    }

    static QByteArray makeId(int number) { return CameraScene::cameraId(number).toLatin1(); }

    Used m_used;
    OpenCameras m_cameras;
    Plug* m_plug = nullptr;
    Open* m_open = nullptr;
    Call* m_clearJournal = nullptr;
    int m_plugged = 0;
};

FigurePair compareMemory(Used used) {
    const auto cameras = std::make_shared<MoreCameras>(used);
    return {[=] { return cameras->measure(); }, {}};
}

} // namespace

FigurePair DeviceFigures::takeHeap() {
    return compareMemory(UsedMemory::heapKib);
}

FigurePair DeviceFigures::takeResident() {
    return compareMemory(UsedMemory::residentKib);
}
