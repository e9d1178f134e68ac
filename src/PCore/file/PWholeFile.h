// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QByteArray>

class QFileDevice;

/// Writes files so that they are whole or as before. Any thread.
namespace PWholeFile {

/// Replaces a file in one step, or makes it. Fails with the system's reason, without the path; the
/// old file then stays.
PStatus replace(const QString& path, const QByteArray& bytes);

/// Writes all bytes to an open file. False if that fails; the file's errorString() is then why.
bool writeAll(QFileDevice& file, const QByteArray& bytes);

} // namespace PWholeFile
