// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PProcessUsage.h>

#include <QDir>

#include <malloc.h>

namespace {

qint64 countEntries(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

constexpr qint64 bytesPerTime = 1 << 20;

QString describeGrowth(const QString& what, qint64 before, qint64 after, qint64 tooMuch) {
    return after - before < tooMuch ? QString()
                                    : u"%1: %2 before, %3 after"_qs.arg(
                                          what, QString::number(before), QString::number(after));
}

} // namespace

PProcessUsage PProcessUsage::read() {
    const struct mallinfo2 memory = mallinfo2();
    return {countEntries(u"/proc/self/task"_qs), countEntries(u"/proc/self/fd"_qs),
            qint64(memory.uordblks + memory.hblkhd)};
}

QString PProcessUsage::describeThreads(const PProcessUsage& before, int times) const {
    return describeGrowth(u"threads"_qs, before.threads, threads, times);
}

QString PProcessUsage::describeFiles(const PProcessUsage& before, int times) const {
    return describeGrowth(u"open files"_qs, before.files, files, times);
}

QString PProcessUsage::describeMemory(const PProcessUsage& before, int times) const {
    return describeGrowth(u"bytes allocated"_qs, before.bytes, bytes, times * bytesPerTime);
}
