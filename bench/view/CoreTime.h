// SPDX-License-Identifier: MIT
#pragma once

/// What a thread has had of the machine's cores since its start, in seconds. A value.
struct CoreTime {
    double used = 0;   ///< it ran
    double waited = 0; ///< it was ready to run, and others did

    /// Of the calling thread, by the account of the Linux scheduler (proc_pid_schedstat(5)); zeros
    /// on a system that keeps none.
    static CoreTime ofThisThread();
    CoreTime operator-(const CoreTime& earlier) const;
};
