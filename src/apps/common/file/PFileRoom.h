// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// Room on the disk for what is about to be written. Any thread.
namespace PFileRoom {

/// Reserves room for this many bytes from this offset of an open file, so that the file system
/// takes it in one piece and not page by page. The file's size stays. Nothing happens where it
/// cannot be done: writing reports a full disk.
void reserve(int descriptor, qint64 offset, qint64 count);

} // namespace PFileRoom
