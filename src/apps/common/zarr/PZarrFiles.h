// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QByteArray>

/// The files and folders of a recording that is a folder. Nothing waits until the disk has them
/// (PWholeFile::replace() does): that would take longer than a frame. All fail with the system's
/// reason, without the path. Any thread.
namespace PZarrFiles {

/// Writes a new file. On failure nothing of it remains.
PStatus create(const QString& path, const char* bytes, qsizetype count);
/// Writes or replaces a file in one step: readers find the old one or the new one, whole.
PStatus replace(const QString& path, const QByteArray& bytes);
/// Makes a new folder in one that exists.
PStatus makeFolder(const QString& path);
/// Gives a file or folder another name; a file, or an empty folder, that has it is replaced.
PStatus rename(const QString& from, const QString& to);

} // namespace PZarrFiles
