// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTPixelSwap.h>

#include <PDip/PImage.h>
#include <PDip/PPixelOperations.h>

#include <figure/FigureProgram.h>
#include <figure/Stopwatch.h>

#include <libyuv.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <array>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <vector>

// What is done to the pixels of a pulled frame, in place: each pass beside what other libraries
// take for the same, on one thread.

namespace {

/// A frame of 32-bit pixels.
class Frame {
public:
    Frame(int width, int height)
        : m_opaque(std::size_t(width), 255) {
        if (!m_image.create(width, height, PDIP::ColorFormat::BgrX))
            throw std::runtime_error("no memory for a frame");
        const PDIP::ImageRawData data = m_image.rawData(PDIP::AccessMode::Write);
        for (std::size_t i = 0; i < data.size(); ++i)
            data.data()[i] = static_cast<unsigned char>(i * 7);
    }

    double setXMs() {
        return Stopwatch::threadMs([&] { PDIP::setXToXRGB(&m_image); });
    }
    double swapMs() {
        const std::size_t count = std::size_t(width()) * std::size_t(height());
        return Stopwatch::threadMs([&] { PTPixelSwap::fastest()(pixels(), count); });
    }
    /// Copies one row of 255 into the fourth byte of every row.
    double yuvSetXMs() {
        return Stopwatch::threadMs([&] {
            libyuv::ARGBCopyYToAlpha(m_opaque.data(), 0, pixels(), stride(), width(), height());
        });
    }
    double yuvSwapMs() {
        return Stopwatch::threadMs(
            [&] { libyuv::ARGBToABGR(pixels(), stride(), pixels(), stride(), width(), height()); });
    }
    double openCvSwapMs() {
        cv::Mat matrix(height(), width(), CV_8UC4, pixels());
        return Stopwatch::threadMs([&] { cv::cvtColor(matrix, matrix, cv::COLOR_BGRA2RGBA); });
    }
    double qtSwapMs() {
        if (m_qtImage.isNull()) // with memory of its own: another's would be copied first
            m_qtImage = m_image.toQImage().copy();
        return Stopwatch::threadMs([&] { m_qtImage.rgbSwap(); });
    }

private:
    int width() const { return int(m_image.width()); }
    int height() const { return int(m_image.height()); }
    int stride() const { return int(m_image.bytesPerLine()); }
    uint8_t* pixels() { return m_image.rawData(PDIP::AccessMode::ReadWrite).data(); }

    PImage m_image;
    QImage m_qtImage;
    std::vector<uint8_t> m_opaque;
};

struct Size {
    const char* name;
    int width;
    int height;
};

using Pass = double (Frame::*)();

void addFigure(const Size& size, const std::string& name, Pass ours, Pass reference,
               const Figure& texts) {
    Figure figure = texts;
    figure.name = "pixels/" + name + "/" + size.name;
    figure.unit = "ms";
    FigureProgram::add(figure, [=] {
        const auto frame = std::make_shared<Frame>(size.width, size.height);
        return FigurePair{[=] { return (frame.get()->*ours)(); },
                          [=] { return (frame.get()->*reference)(); }};
    });
}

} // namespace

int main(int argc, char** argv) {
    cv::setNumThreads(1);
    for (const Size& size :
         {Size{"2MP", 1920, 1080}, Size{"20MP", 5440, 3648}, Size{"61MP", 9568, 6380}}) {
        addFigure(size, "set-x", &Frame::setXMs, &Frame::yuvSetXMs,
                  {"", "setXToXRGB", "libyuv ARGBCopyYToAlpha in place", "", 1.0});
        addFigure(size, "swap", &Frame::swapMs, &Frame::yuvSwapMs,
                  {"", "exchange red and blue", "libyuv ARGBToABGR in place", "", 1.0});
        addFigure(size, "swap-opencv", &Frame::swapMs, &Frame::openCvSwapMs,
                  {"", "exchange red and blue", "OpenCV cvtColor in place", "", 0.5});
        addFigure(size, "swap-qt", &Frame::swapMs, &Frame::qtSwapMs,
                  {"", "exchange red and blue", "QImage::rgbSwap in place", "", 0.5});
    }
    return FigureProgram::run(argc, argv);
}
