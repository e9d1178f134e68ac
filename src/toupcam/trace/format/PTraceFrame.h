// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

#include <QString>

/// The pixels of frames in a trace. Any thread.
namespace PTraceFrame {

/// The largest frame that is recorded or replayed, in bytes.
constexpr std::size_t mostBytes = std::size_t(1) << 30;

/// The bytes of a pushed frame; 0 if its header does not add up, so that nothing is known about the
/// memory behind it, or if they are more than the most.
std::size_t pushedBytes(const BITMAPINFOHEADER& header);
/// The bytes of a pulled frame with this many bits a pixel; 0 likewise.
std::size_t pulledBytes(const ToupcamFrameInfoV2& info, int bits);

/// The CRC-32 of bytes, as hexadecimal text.
QString checksum(const void* data, std::size_t bytes);

/// Fills memory with what stands for pixels that were not recorded: different for each checksum.
void fillPattern(unsigned char* data, std::size_t bytes, quint32 checksum);

} // namespace PTraceFrame
