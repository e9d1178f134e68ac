// SPDX-License-Identifier: MIT
#include <toupcam/sim/PSimLens.h>

#include <toupcam/sim/PSimReadyLens.h>
#include <toupcam/sim/PSimSensorLens.h>

BITMAPINFOHEADER PSimPicture::header() const {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = static_cast<int>(width);
    header.biHeight = static_cast<int>(height);
    header.biPlanes = 1;
    header.biBitCount = static_cast<unsigned short>(bits);
    header.biSizeImage = static_cast<unsigned>(bytes());
    return header;
}

std::uint8_t* PSimPicture::ownPixels() {
    if (memory.size() < bytes())
        memory.resize(bytes());
    pixels = memory.data();
    return memory.data();
}

std::shared_ptr<PSimLens> PSimLens::create(std::shared_ptr<const PSimCameraSpec> spec,
                                           std::uint64_t seed) {
    using Kind = PSimSourceSpec::Kind;
    if (spec->source.kind == Kind::Patches)
        return std::make_shared<PSimPatchesLens>(std::move(spec));
    if (spec->source.kind == Kind::Ring)
        return std::make_shared<PSimRingLens>(std::move(spec));
    return std::make_shared<PSimSensorLens>(std::move(spec), seed);
}
