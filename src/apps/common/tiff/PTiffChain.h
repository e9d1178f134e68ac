// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

class PTransactionalFile;

/// The chain of directories in a little-endian TIFF or BigTIFF file, one for each picture, as any
/// reader follows it from the file's beginning. One thread.
class PTiffChain {
public:
    /// The number of directories that can be reached, at most `most`. Reads neither their entries
    /// nor pixels.
    static quint64 count(const PTransactionalFile& file, quint64 most);
};
