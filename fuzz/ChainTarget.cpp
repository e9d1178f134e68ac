// SPDX-License-Identifier: MIT
// The directories of a TIFF file, as they are counted when a recording ends.
#include <FuzzSupport.h>

#include <apps/common/tiff/PTiffChain.h>
#include <apps/common/tiff/PTransactionalFile.h>

#include <QDir>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr quint64 most = 100;
    // One file for all runs, which has no name: a step that is not committed is undone.
    static PTransactionalFile& file = *new PTransactionalFile;
    static const bool isMade = file.create(QDir(Fuzz::folder()).filePath(u"chain.tif"_qs)).isOk();
    Fuzz::require(isMade && file.write(0, data, qint64(size)), "the file can be written");
    Fuzz::require(PTiffChain::count(file, most) <= most, "no more are counted than wanted");
    file.rollBack();
    return 0;
}
