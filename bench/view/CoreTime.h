// SPDX-License-Identifier: MIT
#pragma once

/// The time that a thread has had and waited for a core since its start, in seconds. A value type.
struct CoreTime {
    double used = 0;   ///< it ran
    double waited = 0; ///< it was ready to run, and others did

    /// For the calling thread, from the Linux scheduler (proc_pid_schedstat(5)); zeros on a system
    /// without these statistics.
    static CoreTime ofThisThread();
    CoreTime operator-(const CoreTime& earlier) const;
};
