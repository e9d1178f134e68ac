// SPDX-License-Identifier: MIT
#include <toupcam/sim/frame/PSimPicture.h>

BITMAPINFOHEADER PSimPicture::header() const {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = int(width);
    header.biHeight = int(height);
    header.biPlanes = 1;
    header.biBitCount = static_cast<unsigned short>(bits);
    header.biSizeImage = unsigned(bytes());
    return header;
}

std::uint8_t* PSimPicture::ownPixels() {
    if (memory.size() < bytes())
        memory.resize(bytes());
    pixels = memory.data();
    return memory.data();
}
