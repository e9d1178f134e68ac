// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/// Files that another thread can complete when the main thread never returns from a call to a
/// camera. Exists as long as there may be such files.
class PFilesInProgress {
public:
    /// `complete`: ends what is written and waits until its files are complete. It runs on any
    /// thread, and uses nothing that another one changes without a lock.
    explicit PFilesInProgress(std::function<void()> complete);
    /// Waits while completeAll() runs.
    ~PFilesInProgress();
    PFilesInProgress(const PFilesInProgress&) = delete;
    PFilesInProgress& operator=(const PFilesInProgress&) = delete;

    /// Completes all such files, one after the other. Any thread.
    static void completeAll();

private:
    const std::function<void()> m_complete;
};
