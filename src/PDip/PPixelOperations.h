// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// Operations on the pixels of an image.

#include <PCore/PExport.h>
#include <PCore/PStatus.h>

class PImage;

namespace PDIP {

/// Sets the fourth byte (X) of every 32-bit pixel to 255 and the image's format to Xrgb. The other
/// bytes are unchanged: a BgrX image still has blue first, and the caller must exchange red and
/// blue. Fails, changing nothing, if the pixels are not 32-bit or memory is exhausted. Any thread.
PCD_EXPORT PStatus setXToXRGB(PImage* image);

} // namespace PDIP
