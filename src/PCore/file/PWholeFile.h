// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>
#include <PCore/PStatus.h>

#include <QByteArray>

class QFileDevice;

/// Writes files completely or not at all. Any thread.
namespace PWholeFile {

/// How many bytes longer the name of a file is while replace() writes it.
constexpr int temporarySuffix = 7;

/// Creates or replaces a file in one step. Fails with the system's reason, without the path; an
/// existing file then stays as it was.
PCD_EXPORT PStatus replace(const QString& path, const QByteArray& bytes);

/// Writes all bytes to an open file. False if that fails; the reason is in the file's
/// errorString().
PCD_EXPORT bool writeAll(QFileDevice& file, const QByteArray& bytes);

} // namespace PWholeFile
