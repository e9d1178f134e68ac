// SPDX-License-Identifier: MIT
#include <devices/UsedMemory.h>

#include <QByteArray>
#include <QFile>
#include <QList>

#include <malloc.h>
#include <unistd.h>

double UsedMemory::heapKib() {
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd) / 1024;
}

double UsedMemory::residentKib() {
    malloc_trim(0);
    QFile file(u"/proc/self/statm"_qs);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QList<QByteArray> pages = file.readAll().split(' ');
    const double page = double(sysconf(_SC_PAGESIZE)) / 1024;
    return (pages.value(1).toDouble() - pages.value(2).toDouble()) * page;
}
