// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

/// The name of the running program in the files it writes. Any thread.
class PProgramName {
public:
    /// "pcdview 1.0".
    static QString withVersion() {
        return u"%1 %2"_qs
            .arg(QCoreApplication::applicationName(), QCoreApplication::applicationVersion())
            .trimmed();
    }
};
