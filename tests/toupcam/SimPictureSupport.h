// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/SimTestSupport.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <unistd.h>

/// Cameras whose pictures can be computed in advance, and measurements on pictures.

constexpr unsigned pictureWidth = 320;
constexpr unsigned pictureHeight = 240;
constexpr double picturePixels = pictureWidth * pictureHeight;

// A sensor with simple numbers: full light gives 100 electrons a millisecond.
constexpr double electronsPerMs = 100.0;
constexpr double electronsPerCount = 10.0;
constexpr double offset = 8.0;
constexpr double readNoise = 20.0;

inline SimCameraText flatCamera(const std::string& more = "") {
    SimCameraText camera;
    camera.width = pictureWidth;
    camera.height = pictureHeight;
    camera.bits = 8;
    camera.source = R"({"kind": "flat", "level": 1})";
    camera.extra = R"(, "sensor": {"fullWell": 100000, "electronsPerCount": 10, "offset": 8,
                                   "readNoise": 20, "electronsPerMs": 100},
                      "exposure": {"min": 10, "auto": false, "default": 1000})" +
                   more;
    return camera;
}

/// A temporary folder for picture files, removed with the test.
class PictureFolder {
public:
    PictureFolder()
        : m_path(std::filesystem::path(::testing::TempDir()) /
                 ("toupcamsim-pictures-" + std::to_string(::getpid()))) {
        std::filesystem::create_directory(m_path);
    }
    ~PictureFolder() { std::filesystem::remove_all(m_path); }
    PictureFolder(const PictureFolder&) = delete;
    PictureFolder& operator=(const PictureFolder&) = delete;

    // Adds a portable pixmap of one colour, the simplest of picture files.
    std::string add(const std::string& name, char red, char green, char blue) const {
        return paint(name, 32, 32, [=](int, int) { return std::string{red, green, blue}; });
    }
    /// Adds a pixmap whose pixels are computed: `colourAt` gives the three bytes of each.
    std::string paint(const std::string& name, int width, int height,
                      const std::function<std::string(int, int)>& colourAt) const {
        const std::filesystem::path file = m_path / name;
        std::ofstream out(file, std::ios::binary);
        out << "P6\n" << width << " " << height << "\n255\n";
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x)
                out << colourAt(x, y);
        }
        return file.string();
    }
    std::string path() const { return m_path.string(); }

private:
    std::filesystem::path m_path;
};

/// A colour camera that shows a picture file almost without noise: full light is 200 counts.
inline SimCameraText pictureCamera(const std::string& path, const std::string& more = "") {
    SimCameraText camera;
    camera.source =
        R"({"kind": "picture", "path": ")" + path + R"(", "framesEach": 1)" + more + "}";
    // Without offset.
    camera.extra = R"(, "sensor": {"fullWell": 1000000, "electronsPerCount": 1000, "offset": 0,
                                   "readNoise": 0, "electronsPerMs": 200000},
                      "exposure": {"auto": false, "default": 1000})";
    return camera;
}

/// The bytes of a frame without row padding.
inline std::vector<std::uint8_t> pixelBytes(const PushedFrame& frame) {
    std::vector<std::uint8_t> result;
    const auto rowBytes = std::ptrdiff_t(frame.header.biWidth) * (frame.header.biBitCount / 8);
    const auto stride = std::ptrdiff_t(frame.stride());
    for (int y = 0; y < frame.header.biHeight; ++y) {
        const auto row = frame.bytes.begin() + y * stride;
        result.insert(result.end(), row, row + rowBytes);
    }
    return result;
}

/// The mean of all channels of a frame.
inline double measureMean(const PushedFrame& frame) {
    double sum = 0;
    const std::vector<std::uint8_t> bytes = pixelBytes(frame);
    for (const std::uint8_t byte : bytes)
        sum += byte;
    return sum / double(bytes.size());
}

/// The mean of one channel.
inline double channelMean(const PushedFrame& frame, int channel) {
    double sum = 0;
    for (int y = 0; y < frame.header.biHeight; ++y) {
        for (int x = 0; x < frame.header.biWidth; ++x)
            sum += frame.at(x, y, channel);
    }
    return sum / frame.header.biWidth / frame.header.biHeight;
}

/// Mean and variance of one pixel's value over time, computed from two frames alone: differences
/// between pixels cancel out.
struct Transfer {
    double mean;
    double variance;
};

inline Transfer measureTransfer(const PushedFrame& a, const PushedFrame& b) {
    const std::vector<std::uint8_t> one = pixelBytes(a);
    const std::vector<std::uint8_t> other = pixelBytes(b);
    double sum = 0;
    double squares = 0;
    for (std::size_t i = 0; i < one.size(); ++i) {
        const double difference = double(one[i]) - other[i];
        sum += difference;
        squares += difference * difference;
    }
    const auto n = double(one.size());
    const double bias = sum / n;
    return {(measureMean(a) + measureMean(b)) / 2, (squares / n - bias * bias) / 2};
}

class SimPictureTest : public SimTest {
protected:
    /// Streams until `count` frames have arrived.
    std::vector<PushedFrame> take(HToupcam handle, std::size_t count) {
        FrameLog log(count);
        EXPECT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
        EXPECT_TRUE(log.waitFor(count));
        EXPECT_EQ(Toupcam_Stop(handle), S_OK);
        return log.frames();
    }
    PushedFrame takeOne(HToupcam handle) { return take(handle, 1).front(); }
};
