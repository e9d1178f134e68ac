// SPDX-License-Identifier: MIT
#include <apps/pcdview/view/PViewSampler.h>

#include <apps/pcdview/view/PPixelLayout.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

/// Maps pixels of the view to samples of the picture along one axis.
struct AxisSamples {
    int first = 0;                    ///< pixel of the view
    int count = 0;                    ///< pixels of the view
    int each = 1;                     ///< samples a pixel
    std::vector<std::size_t> offsets; ///< in steps of `stride`
};

AxisSamples makeSamples(double corner, double scale, long pixels, int room, std::size_t stride) {
    AxisSamples axis;
    axis.each = scale < 1 ? PViewSampler::samplesAnAxis : 1;
    axis.first = std::clamp(int(std::ceil(corner - 0.5)), 0, room);
    const int end = std::clamp(int(std::ceil(corner + double(pixels) * scale - 0.5)), 0, room);
    axis.count = std::max(end - axis.first, 0);
    axis.offsets.reserve(std::size_t(axis.count) * std::size_t(axis.each));
    for (int i = 0; i < axis.count * axis.each; ++i) {
        const double inView = axis.first + (i + 0.5) / axis.each;
        const long index = long(std::floor((inView - corner) / scale));
        axis.offsets.push_back(std::size_t(std::clamp(index, 0L, pixels - 1)) * stride);
    }
    return axis;
}

/// The sum of the samples of one pixel of the view.
struct SampleSum {
    unsigned red = 0;
    unsigned green = 0;
    unsigned blue = 0;
    unsigned highest = 0;

    template <typename Layout>
    void add(const unsigned char* pixel) {
        const unsigned r = pixel[Layout::red];
        const unsigned g = pixel[Layout::green];
        const unsigned b = pixel[Layout::blue];
        red += r;
        green += g;
        blue += b;
        highest = std::max({highest, r, g, b});
    }
};

template <typename Layout>
SampleSum sumAt(const unsigned char* const* rows, const std::size_t* columns, int each) {
    SampleSum sum;
    for (int y = 0; y < each; ++y) {
        for (int x = 0; x < each; ++x)
            sum.add<Layout>(rows[y] + columns[x]);
    }
    return sum;
}

/// Converts a sum of samples to a colour.
class Shader {
public:
    Shader(const PViewStyle& style, int samples)
        : m_levels(style.levels())
        , m_mark(style.markClipped)
        , m_samples(unsigned(samples)) {}

    QRgb operator()(const SampleSum& sum) const {
        if (m_mark && sum.highest == 255)
            return PViewSampler::overMark();
        if (m_mark && sum.highest == 0)
            return PViewSampler::underMark();
        return qRgb(level(sum.red), level(sum.green), level(sum.blue));
    }

private:
    int level(unsigned sum) const { return m_levels[sum / m_samples]; }

    PViewStyle::Levels m_levels;
    bool m_mark;
    unsigned m_samples;
};

template <typename Layout>
void renderPixels(const unsigned char* pixels, const AxisSamples& rows, const AxisSamples& columns,
                  const Shader& shader, QImage& target) {
    const int each = columns.each;
    for (int y = 0; y < rows.count; ++y) {
        const std::size_t* const row = rows.offsets.data() + std::ptrdiff_t{y} * each;
        std::array<const unsigned char*, PViewSampler::samplesAnAxis> lines{};
        for (int i = 0; i < each; ++i)
            lines[std::size_t(i)] = pixels + row[i];
        auto* const out = reinterpret_cast<QRgb*>(target.scanLine(rows.first + y)) + columns.first;
        const std::size_t* column = columns.offsets.data();
        for (int x = 0; x < columns.count; ++x, column += each)
            out[x] = shader(sumAt<Layout>(lines.data(), column, each));
    }
}

QImage makeCanvas(QSize size, QImage room) {
    if (room.size() == size && room.format() == QImage::Format_RGB32)
        return room;
    return QImage(size, QImage::Format_RGB32);
}

} // namespace

QImage PViewSampler::render(const PImage& image, const PViewGeometry& geometry,
                            const PViewStyle& style, QColor around, QImage room) {
    QImage canvas = makeCanvas(geometry.viewport(), std::move(room));
    const QRectF place = geometry.pictureInView();
    const bool leavesRoom = !place.contains(QRectF(QPointF(), QSizeF(geometry.viewport())));
    if (canvas.isNull() || image.isNull() || leavesRoom)
        canvas.fill(around);
    if (canvas.isNull() || image.isNull())
        return canvas;
    const double scale = geometry.scale();
    const PImageHeader header = image.header();
    const AxisSamples rows =
        makeSamples(place.y(), scale, header.height(), canvas.height(), header.bytesPerLine());
    const AxisSamples columns =
        makeSamples(place.x(), scale, header.width(), canvas.width(), header.bytesPerPixel());
    const Shader shader(style, rows.each * columns.each);
    const unsigned char* const pixels = image.rawData(PDIP::AccessMode::Read).constData();
    withPixelLayout(header.format(), [&](auto layout) {
        renderPixels<decltype(layout)>(pixels, rows, columns, shader, canvas);
    });
    return canvas;
}
