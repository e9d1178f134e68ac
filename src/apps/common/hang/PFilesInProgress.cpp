// SPDX-License-Identifier: MIT
#include <apps/common/hang/PFilesInProgress.h>

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace {

/// All that exist.
struct PFilesList {
    /// Never deleted: the thread that completes files may outlive static objects.
    static PFilesList& instance() {
        static auto* const list = new PFilesList;
        return *list;
    }

    // Guards `files`, and is held while they are completed, so that none is destroyed meanwhile.
    std::mutex mutex;
    std::vector<const PFilesInProgress*> files;
};

} // namespace

PFilesInProgress::PFilesInProgress(std::function<void()> complete)
    : m_complete(std::move(complete)) {
    PFilesList& list = PFilesList::instance();
    const std::lock_guard lock(list.mutex);
    list.files.push_back(this);
}

PFilesInProgress::~PFilesInProgress() {
    PFilesList& list = PFilesList::instance();
    const std::lock_guard lock(list.mutex);
    list.files.erase(std::find(list.files.begin(), list.files.end(), this));
}

void PFilesInProgress::completeAll() {
    PFilesList& list = PFilesList::instance();
    const std::lock_guard lock(list.mutex);
    for (const PFilesInProgress* files : list.files)
        files->m_complete();
}
