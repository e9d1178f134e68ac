// SPDX-License-Identifier: MIT
#include <reliability/ProcessState.h>

#include <QStringList>

#include <filesystem>
#include <fstream>
#include <iterator>

#include <malloc.h>
#include <unistd.h>

// Defined by a sanitizer's run-time library, if there is one.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace {

qint64 countEntries(const char* folder) {
    const std::filesystem::directory_iterator entries(folder);
    return std::distance(begin(entries), end(entries));
}

QStringList readThreadNames() {
    QStringList names;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream file(entry.path() / "comm");
        std::string name;
        std::getline(file, name);
        names.append(QString::fromStdString(name));
    }
    return names;
}

qint64 readResidentBytes() {
    std::ifstream file("/proc/self/statm");
    qint64 total = 0;
    qint64 resident = 0;
    file >> total >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

qint64 readHeapBytes() {
    if (__sanitizer_get_current_allocated_bytes != nullptr)
        return qint64(__sanitizer_get_current_allocated_bytes());
    const struct mallinfo2 info = mallinfo2();
    return qint64(info.uordblks + info.hblkhd);
}

} // namespace

ProcessState ProcessState::now() {
    const QStringList names = readThreadNames();
    // Qt keeps the idle threads with which it paints for half a minute; each has one descriptor.
    const qint64 pooled = names.count(u"Thread (pooled)"_qs);
    // One descriptor is that of the folder that is being read.
    return {names.size() - pooled, countEntries("/proc/self/fd") - 1 - pooled, readHeapBytes(),
            readResidentBytes()};
}

bool ProcessState::isSanitized() {
    return __sanitizer_get_current_allocated_bytes != nullptr;
}

QString ProcessState::threadNames() {
    return readThreadNames().join(u", "_qs);
}

QString ProcessState::text() const {
    return u"%1 threads and %2 descriptors"_qs.arg(QString::number(threads),
                                                   QString::number(descriptors));
}
