// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/pipe/PTightRows.h>
#include <apps/common/pipe/PYuvConversion.h>

/// Frames as YUV4MPEG2, which encoders and players read: grey ones as they are (Cmono, full range),
/// colours as PYuvConversion makes them. One thread at a time.
class PY4mCoding : public PFrameCoding {
public:
    explicit PY4mCoding(PYuvConversion::Chroma chroma)
        : m_chroma(chroma) {}

    bool needsRate() const override { return true; }
    QByteArray makeHeader(const PImageHeader& first, std::optional<double> rate) const override;
    QByteArray frameMark() const override { return "FRAME\n"; }
    PByteView encode(const PImage& image) override;

private:
    const PYuvConversion::Chroma m_chroma;
    PTightRows m_rows;
    std::vector<unsigned char> m_planes;
};
