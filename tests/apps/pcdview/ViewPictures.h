// SPDX-License-Identifier: MIT
#pragma once

#include <PDip/PImage.h>

#include <QColor>

#include <functional>

/// A picture of this size and format, with the pixels that the function returns.
PImage makePicture(int width, int height, PDIP::ColorFormat format,
                   const std::function<QColor(int x, int y)>& colorAt);
