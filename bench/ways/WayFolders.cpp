// SPDX-License-Identifier: MIT
#include <ways/WayFolders.h>

#include <stdexcept>
#include <string>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

namespace {

namespace files = std::filesystem;

void releaseMiddle(const files::path& path) {
    constexpr off_t kept = off_t(1) << 20;
    const int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    const off_t size = ::lseek(file, 0, SEEK_END);
    const bool isReleased =
        size <= 2 * kept ||
        ::fallocate(file, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, kept, size - 2 * kept) == 0;
    ::close(file);
    if (!isReleased)
        throw std::runtime_error("a part of a file could not be given back to the system");
}

} // namespace

files::path WayFolders::bin() {
    return files::read_symlink("/proc/self/exe").parent_path();
}

WayFolders::Scratch::Scratch() {
    std::string name = (files::current_path() / "bench_ways-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no folder could be made in the current one");
    m_path = name;
}

WayFolders::Scratch::~Scratch() {
    std::error_code ignored; // it must not throw
    files::remove_all(m_path, ignored);
}

void WayFolders::Scratch::release() const {
    for (const files::directory_entry& entry : files::recursive_directory_iterator(m_path)) {
        if (entry.is_regular_file())
            releaseMiddle(entry.path());
    }
}
