// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QByteArray>
#include <QString>

/// Files with the results of a command, such as a report: created or replaced in one step. Any
/// thread.
namespace PResultFile {

/// To be called before the work whose result would be lost. Fails, with a sentence that names the
/// file, if write() cannot succeed: there is something else than a file of that name, no file can
/// be made in its folder, or the name is too long.
PStatus check(const QString& path);

/// Writes the file. Fails likewise, and with the system's reason; an existing file then stays as it
/// was.
PStatus write(const QString& path, const QByteArray& bytes);

} // namespace PResultFile
