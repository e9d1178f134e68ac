// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PUsbAccessExamination.h>

#include <apps/common/system/PUdevRules.h>

#include <QFile>

#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

using Severity = PFinding::Severity;

const QString accessTopic = u"usb-access"_qs;

/// 0, or the system's error number. Only opening it shows all reasons; it changes nothing.
int tryToOpen(const QString& file) {
    const int descriptor = ::open(QFile::encodeName(file).constData(), O_RDWR | O_CLOEXEC);
    if (descriptor < 0)
        return errno;
    ::close(descriptor);
    return 0;
}

QString describeDevices(qsizetype count) {
    return count == 0
               ? u"no device is connected"_qs
               : u"%1 connected, none of which can be a camera that needs an SDK"_qs.arg(count);
}

} // namespace

PUsbAccessExamination::PUsbAccessExamination(PSystemTree system, bool wereCamerasFound)
    : m_system(std::move(system))
    , m_wereCamerasFound(wereCamerasFound) {
}

QList<PFinding> PUsbAccessExamination::run() const {
    QList<PFinding> findings;
    for (const PUsbDevice& device : PUsbBus::possibleCameras(m_system))
        findings.append(examine(device));
    if (!findings.isEmpty())
        return findings;
    const QString none = describeDevices(PUsbBus::devices(m_system).size());
    if (m_wereCamerasFound)
        return {{Severity::Note, accessTopic, u"the USB buses"_qs, none, {}}};
    return {{Severity::Warning, accessTopic, u"the USB buses"_qs, none,
             u"Connect the camera, switch it on, and try another cable and port."_qs}};
}

PFinding PUsbAccessExamination::examine(const PUsbDevice& device) const {
    const int error = tryToOpen(device.node);
    if (error != 0)
        return report(device, error);
    return {Severity::Ok, accessTopic, device.title(), u"this user can open it"_qs, {}};
}

PFinding PUsbAccessExamination::report(const PUsbDevice& device, int error) const {
    const QString found = u"this user cannot open \"%1\": %2"_qs.arg(
        device.node, QString::fromLocal8Bit(std::strerror(error)));
    return {m_wereCamerasFound ? Severity::Warning : Severity::Error, accessTopic, device.title(),
            found, findFix(device, error)};
}

QString PUsbAccessExamination::findFix(const PUsbDevice& device, int error) const {
    if (error != EACCES && error != EPERM)
        return u"Unplug the device and plug it in again; in a container, also pass /dev/bus/usb through."_qs;
    const QString file = PUdevRules::findFile(m_system, device.id);
    if (!file.isEmpty()) {
        return u"The rule in \"%1\" is not applied: run \"sudo udevadm control --reload\", then "
               "unplug the device and plug it in again."_qs.arg(file);
    }
    return u"There is no udev rule for it: run \"pcdctl doctor --udev %1 | sudo tee %2\", then "
           u"unplug "
           "the device and plug it in again."_qs.arg(device.id.toText(),
                                                     QString::fromLatin1(PUdevRules::usualFile));
}
