// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include <sys/types.h>

/// The memory that another process reads or writes, and what it hands to the kernel: a copy of a
/// frame is seen in whatever code it is made, with whatever instructions. Throws std::runtime_error
/// if the system does not tell. One thread.
class TouchedMemory {
public:
    /// Of this process, of the same user.
    explicit TouchedMemory(pid_t process);

    /// Begins to count.
    void begin();
    /// Bytes in pages that were touched since and can be written, each counted once, plus the bytes
    /// written to files and pipes since. Memory that was returned to the system by now is not in
    /// it.
    double bytes() const;

private:
    double writtenBytes() const;

    const std::string m_folder; ///< in /proc
    double m_writtenBefore = 0;
};
