// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/profile/PDeviceProfileReport.h>

#include <QCoreApplication>
#include <QString>

/// What has come of a profile, as HTML for people. Any thread.
class PProfileReportText {
    Q_DECLARE_TR_FUNCTIONS(PProfileReportText)

public:
    static QString html(const PDeviceProfileReport& report);
};
