// SPDX-License-Identifier: MIT
#include <reliability/ReliableCamera.h>

#include <toupcam/sim/api/toupcamsim.h>

#include <stdexcept>
#include <vector>

namespace {

constexpr int bitsAPixel = 24;

BITMAPINFOHEADER makeHeader() {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = ReliableCamera::width;
    header.biHeight = ReliableCamera::height;
    header.biPlanes = 1;
    header.biBitCount = bitsAPixel;
    header.biSizeImage = ReliableCamera::width * ReliableCamera::height * bitsAPixel / 8;
    return header;
}

void pushPicture(int isSnapshot, int width) {
    BITMAPINFOHEADER header = makeHeader();
    header.biWidth = width;
    const std::vector<unsigned char> pixels(header.biSizeImage, 77);
    ToupcamSim_pushRaw(ReliableCamera::id, pixels.data(), &header, isSnapshot);
}

} // namespace

void ReliableCamera::install(const QByteArray& source) {
    const QByteArray scene = QByteArray(R"({"cameras": [{
            "id": "reliable", "model": "Simulated-Reliable", "serial": "RELIABLE01",
            "flags": ["USB30", "TEC_ONOFF", "FAN", "TRIGGER_SOFTWARE", "TRIGGER_EXTERNAL", "BANDWIDTH"],
            "resolutions": [{"width": 64, "height": 48, "fps": 1000}, {"width": 32, "height": 24, "fps": 2000}],
            "speedLevels": 3, "fanLevels": 3, "thermalSpeed": 0,
            "exposure": {"min": 50, "default": 100, "max": 1000000, "auto": false},
            "source": )") + source +
                             "}]}";
    if (const char* const problem = ToupcamSim_loadScene(scene.constData()))
        throw std::runtime_error(problem);
}

void ReliableCamera::pushFrame() {
    pushPicture(0, width);
}

void ReliableCamera::pushStill() {
    pushPicture(1, width);
}

void ReliableCamera::pushMalformed() {
    pushPicture(0, 1000 * width);
}

void ReliableCamera::pushLoss() {
    ToupcamSim_pushRaw(id, nullptr, nullptr, 0);
}
