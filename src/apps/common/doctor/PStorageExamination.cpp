// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PStorageExamination.h>

#include <apps/common/system/PSystemMemory.h>

#include <QFileInfo>

#include <utility>

namespace {

using Severity = PFinding::Severity;

const QString diskTopic = u"disk"_qs;
const QString memoryTopic = u"memory"_qs;

QString toMegabytes(quint64 bytes) {
    return u"%1 MB"_qs.arg(double(bytes) / 1e6, 0, 'f', 0);
}

QString toRate(double megabytes) {
    return u"%1 MB/s"_qs.arg(megabytes, 0, 'f', megabytes < 10 ? 1 : 0);
}

} // namespace

PStorageExamination::PStorageExamination(PSystemTree system, const QString& folder,
                                         std::optional<double> cameraRate, quint64 mostWaiting)
    : m_system(std::move(system))
    , m_folder(QFileInfo(folder).absoluteFilePath())
    , m_cameraRate(cameraRate)
    , m_mostWaiting(mostWaiting) {
}

QList<PFinding> PStorageExamination::run() const {
    return {examineMemory(), judge(PDiskSpeed::measure(m_folder))};
}

PFinding PStorageExamination::examineMemory() const {
    const std::optional<quint64> available = PSystemMemory::available(m_system);
    if (!available)
        return {Severity::Note, memoryTopic, u"memory"_qs, u"the system does not report it"_qs, {}};
    QString found = u"%1 available; up to %2 are used for frames that wait for the disk"_qs.arg(
        toMegabytes(*available), toMegabytes(m_mostWaiting));
    if (m_cameraRate && *m_cameraRate > 0) {
        found += u", which is %1 s of this camera"_qs.arg(
            double(m_mostWaiting) / 1e6 / *m_cameraRate, 0, 'f', 1);
    }
    if (*available >= m_mostWaiting)
        return {Severity::Ok, memoryTopic, u"memory"_qs, found, {}};
    return {Severity::Warning, memoryTopic, u"memory"_qs, found,
            u"Close other programs before you record."_qs};
}

PFinding PStorageExamination::judge(const PDiskSpeed::Result& disk) const {
    if (!disk.status.isOk()) {
        return {Severity::Error, diskTopic, m_folder,
                u"cannot write there: "_qs + disk.status.reason(),
                u"Choose a writable folder with free space: --folder DIR"_qs};
    }
    const QString speed = u"writes %1"_qs.arg(toRate(disk.megabytesPerSecond));
    if (!m_cameraRate) {
        return {Severity::Note, diskTopic, m_folder, speed + u"; the camera's rate is not known"_qs,
                u"Give the rate of the camera with --rate."_qs};
    }
    const QString both = u"%1, the camera sends %2"_qs.arg(speed, toRate(*m_cameraRate));
    if (disk.megabytesPerSecond >= *m_cameraRate)
        return {Severity::Ok, diskTopic, m_folder, both, {}};
    return {Severity::Warning, diskTopic, m_folder, both + u": long recordings will not keep up"_qs,
            u"Record to a faster disk, in a smaller mode or region, or at a lower frame rate."_qs};
}
