// SPDX-License-Identifier: MIT
#include <apps/common/file/PFileRoom.h>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>

void PFileRoom::reserve(int descriptor, qint64 offset, qint64 count) {
    struct statfs system {};
    // Reserving memory is as much work as writing to it.
    if (fstatfs(descriptor, &system) != 0 || system.f_type == TMPFS_MAGIC)
        return;
    // Without a change of the size: the file stays valid if the program is killed now.
    [[maybe_unused]] const int reserved =
        ::fallocate(descriptor, FALLOC_FL_KEEP_SIZE, offset, count);
}
