// SPDX-License-Identifier: MIT
// Saved state as JSON, as PJsonReader reads it.
#include <FuzzSupport.h>
#include <StreamCopy.h>

#include <PCore/state/PJsonReader.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    PJsonReader reader;
    if (reader.setDocument(Fuzz::toBytes(data, size)).isOk())
        StreamCopy::requireKept(reader);
    return 0;
}
