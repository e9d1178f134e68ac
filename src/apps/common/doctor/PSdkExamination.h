// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PCameraSdk.h>
#include <apps/common/doctor/PFinding.h>

/// Examines the camera SDK that a program has loaded, or could not load. The main thread.
class PSdkExamination {
public:
    /// `loaded` is what the SDK's load() returned; these functions are required.
    PSdkExamination(const PCameraSdk& sdk, PStatus loaded,
                    QStringList functions = pluginFunctions());

    /// Which library it is and from where, or why there is none; what it lacks.
    QList<PFinding> run() const;

    /// The functions that the plugin of this project calls.
    static QStringList pluginFunctions();
    /// What helps against this reason for which a library cannot be loaded, in one line.
    static QString adviseOnFailure(const QString& reason);

private:
    PFinding examineLibrary() const;
    PFinding examineFunctions() const;

    const PCameraSdk& m_sdk;
    const PStatus m_loaded;
    const QStringList m_functions;
};
