// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PProcessUsage.h>

#include <QDir>

#include <malloc.h>

namespace {

qint64 countEntries(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

} // namespace

PProcessUsage PProcessUsage::read() {
    const struct mallinfo2 memory = mallinfo2();
    return {countEntries(u"/proc/self/task"_qs), countEntries(u"/proc/self/fd"_qs),
            qint64(memory.uordblks + memory.hblkhd)};
}
