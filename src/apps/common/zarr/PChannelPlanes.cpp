// SPDX-License-Identifier: MIT
#include <apps/common/zarr/PChannelPlanes.h>

#include <apps/common/tiff/PPackedRows.h>

#include <libyuv.h>

const std::vector<PPlane>& PChannelPlanes::split(const QImage& picture) {
    m_picture = PPackedRows::packable(picture);
    const int channels = PPackedRows::sampleCount(m_picture);
    m_samples.resize(std::size_t(channels));
    m_planes.assign(std::size_t(channels), {nullptr, m_picture.width(), m_picture.height()});
    if (channels > 1)
        splitColours(m_picture);
    else
        copyGrey(m_picture);
    return m_planes;
}

void PChannelPlanes::splitColours(const QImage& picture) {
    for (std::size_t i = 0; i < m_planes.size(); ++i) {
        m_samples[i].resize(m_planes[i].size());
        m_planes[i].samples = m_samples[i].data();
    }
    // The camera sends blue first.
    const bool isReversed = picture.format() == QImage::Format_BGR888;
    std::vector<uchar>& first = m_samples[isReversed ? 2 : 0];
    std::vector<uchar>& last = m_samples[isReversed ? 0 : 2];
    const int width = picture.width();
    libyuv::SplitRGBPlane(picture.constBits(), int(picture.bytesPerLine()), first.data(), width,
                          m_samples[1].data(), width, last.data(), width, width, picture.height());
}

/// Only if its rows are padded.
void PChannelPlanes::copyGrey(const QImage& picture) {
    PPlane& plane = m_planes.front();
    plane.samples = picture.constBits();
    if (picture.bytesPerLine() == picture.width())
        return;
    std::vector<uchar>& samples = m_samples.front();
    samples.resize(plane.size());
    libyuv::CopyPlane(picture.constBits(), int(picture.bytesPerLine()), samples.data(), plane.width,
                      plane.width, plane.height);
    plane.samples = samples.data();
}

PPlane PChannelPlanes::half(const PPlane& plane) {
    std::vector<uchar>& samples = m_halves[m_nextHalf];
    m_nextHalf = 1 - m_nextHalf;
    PPlane smaller{nullptr, plane.width / 2, plane.height / 2};
    samples.resize(smaller.size());
    // For exactly half the size this is the mean of each square of four, rounded.
    libyuv::ScalePlane(plane.samples, plane.width, smaller.width * 2, smaller.height * 2,
                       samples.data(), smaller.width, smaller.width, smaller.height,
                       libyuv::kFilterBox);
    smaller.samples = samples.data();
    return smaller;
}
