// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/doctor/PFinding.h>
#include <apps/common/doctor/PReportPrivacy.h>

/// The findings as a document to attach to a report of a fault. A value; any thread.
class PDoctorReport {
public:
    explicit PDoctorReport(QList<PFinding> findings);

    /// Versions of program, Qt and operating system, then the findings, without private names.
    QString toText(const PReportPrivacy& privacy) const;
    /// {program, qt, system, worst, findings}.
    QJsonObject toJson() const;

private:
    const QList<PFinding> m_findings;
};
