// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PHolderExamination.h>

#include <apps/common/system/PFileHolders.h>
#include <apps/common/system/PUsbBus.h>

#include <utility>

namespace {

using Severity = PFinding::Severity;

const QString holderTopic = u"camera-in-use"_qs;

PFinding examineHolders(const PUsbDevice& device, const QList<PFileHolder>& holders) {
    if (holders.isEmpty()) {
        return {Severity::Ok,
                holderTopic,
                device.title(),
                u"no program of this user has it open"_qs,
                {}};
    }
    QStringList names;
    for (const PFileHolder& holder : holders)
        names.append(u"%1 (process %2)"_qs.arg(holder.program, QString::number(holder.process)));
    return {
        Severity::Warning, holderTopic, device.title(),
        u"is open in %1; a camera works with one program at a time"_qs.arg(names.join(u", "_qs)),
        u"Close %1, then try again."_qs.arg(names.join(u", "_qs))};
}

} // namespace

PHolderExamination::PHolderExamination(PSystemTree system)
    : m_system(std::move(system)) {
}

QList<PFinding> PHolderExamination::run() const {
    QList<PFinding> findings;
    for (const PUsbDevice& device : PUsbBus::possibleCameras(m_system))
        findings.append(examineHolders(device, PFileHolders::find(m_system, device.node)));
    return findings;
}
