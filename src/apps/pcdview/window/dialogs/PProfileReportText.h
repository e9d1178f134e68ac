// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/profile/PDeviceProfileReport.h>

#include <QCoreApplication>
#include <QString>

/// The result of applying a profile, as HTML for the user. Any thread.
class PProfileReportText {
    Q_DECLARE_TR_FUNCTIONS(PProfileReportText)

public:
    /// What was applied, refused and skipped, with the reasons.
    static QString html(const PDeviceProfileReport& report);
};
