// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

class PImage;

namespace PDIP {

/// Fills the fourth, X byte of every 32-bit pixel with 255 and makes the image's format Xrgb. The
/// other bytes stay where they are: a BgrX image still has blue first then, and red and blue are to
/// be exchanged by the caller. Fails, changing nothing, if the pixels are not 32-bit or there
/// is no memory. Any thread.
PStatus setXToXRGB(PImage* image);

} // namespace PDIP
