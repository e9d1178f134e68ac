// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PCameraIdentity.h>
#include <apps/common/pipe/PTightRows.h>

/// Frames as their pixels, unchanged and without padding; on request after one line of JSON that
/// describes them. One thread at a time.
class PRawCoding : public PFrameCoding {
public:
    /// With a camera there is a header, which names it.
    explicit PRawCoding(std::optional<PCameraIdentity> camera = std::nullopt)
        : m_camera(std::move(camera)) {}

    bool needsRate() const override { return m_camera.has_value(); }
    QByteArray makeHeader(const PImageHeader& first, std::optional<double> rate) const override;
    QByteArray frameMark() const override { return {}; }
    PByteView encode(const PImage& image) override { return m_rows.pack(image); }

private:
    const std::optional<PCameraIdentity> m_camera;
    PTightRows m_rows;
};
