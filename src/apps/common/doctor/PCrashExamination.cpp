// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PCrashExamination.h>

#include <apps/common/crash/PCrashFolder.h>

QList<PFinding> PCrashExamination::run() {
    const QStringList reports = PCrashFolder::reports();
    if (reports.isEmpty())
        return {};
    return {{PFinding::Severity::Note, u"crash"_qs, u"reports of faults"_qs,
             u"%1, the newest is %2"_qs.arg(QString::number(reports.size()), reports.first()),
             u"Add this file to what you report about the fault; it was sent nowhere."_qs}};
}
