// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PDoctorReport.h>

#include <apps/common/program/PProgramName.h>

#include <QJsonArray>
#include <QLibraryInfo>
#include <QStringList>
#include <QSysInfo>

#include <utility>

namespace {

QString systemText() {
    return u"%1, %2 %3, %4"_qs.arg(QSysInfo::prettyProductName(), QSysInfo::kernelType(),
                                   QSysInfo::kernelVersion(), QSysInfo::currentCpuArchitecture());
}

} // namespace

PDoctorReport::PDoctorReport(QList<PFinding> findings)
    : m_findings(std::move(findings)) {
}

QString PDoctorReport::toText(const PReportPrivacy& privacy) const {
    QStringList lines{u"Program:  "_qs + PProgramName::withVersion(),
                      u"Qt:       "_qs + QLibraryInfo::version().toString(),
                      u"System:   "_qs + systemText(), QString()};
    for (const PFinding& finding : m_findings)
        lines.append(finding.toText());
    return privacy.apply(lines.join(u'\n') + u'\n');
}

QJsonObject PDoctorReport::toJson() const {
    QJsonArray findings;
    for (const PFinding& finding : m_findings)
        findings.append(finding.toJson());
    return {{u"program"_qs, PProgramName::withVersion()},
            {u"qt"_qs, QLibraryInfo::version().toString()},
            {u"system"_qs, systemText()},
            {u"worst"_qs, PFinding::severityName(PFinding::findWorst(m_findings))},
            {u"findings"_qs, findings}};
}
