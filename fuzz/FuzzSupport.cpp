// SPDX-License-Identifier: MIT
#include <FuzzSupport.h>

#include <PLog/PLog.h>

#include <QCoreApplication>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

/// libFuzzer calls this once, first.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    // Never destroyed: libFuzzer ends the process without returning from main().
    new QCoreApplication(*argc, *argv);
    // A rejected input is normal: nobody reads why.
    PLog::installQtMessageHandler();
    PLog::setFilter(u"off"_qs);
    return 0;
}

QByteArray Fuzz::toBytes(const std::uint8_t* data, std::size_t size) {
    return QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
}

void Fuzz::require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "This does not hold: %s\n", what);
    std::abort();
}

QString Fuzz::folder() {
    static const QTemporaryDir folder;
    require(folder.isValid(), "a temporary folder can be made");
    return folder.path();
}
