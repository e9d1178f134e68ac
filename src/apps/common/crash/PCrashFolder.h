// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// The folder in which programs leave a report when a signal ends them. One thread at a time.
namespace PCrashFolder {

/// The number of reports that are kept.
constexpr int mostReports = 10;

/// Its path: "pcd/crashes" in the user's folder for state, XDG_STATE_HOME or ~/.local/state. It
/// need not exist.
QString path();

/// The reports in it, as paths, newest first.
QStringList reports();

/// Removes all but the newest reports.
void removeOld();

} // namespace PCrashFolder
