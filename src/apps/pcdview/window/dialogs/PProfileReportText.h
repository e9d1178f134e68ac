// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/profile/PDeviceProfileReport.h>

#include <QCoreApplication>
#include <QString>

#include <functional>

/// The result of applying a profile, as HTML for the user. Any thread.
class PProfileReportText {
    Q_DECLARE_TR_FUNCTIONS(PProfileReportText)

public:
    /// The text that names the setting with this id.
    using Title = std::function<QString(const QByteArray& id)>;

    /// What was applied, refused and skipped, with the reasons. Without titles, it has ids.
    static QString html(const PDeviceProfileReport& report, const Title& title = {});
};
