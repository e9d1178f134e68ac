// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimPicture.h>
#include <toupcam/sim/frame/PSimRows.h>
#include <toupcam/sim/frame/PSimShot.h>

/// The camera's processor: turns the rows of the shot's region into a picture with `bits` per pixel
/// in one pass: binning, metering, colour and tone, flips and rotation. Fills everything of the
/// picture but its number and time. Callable from any thread.
void simProcess(PSimRows& sensor, unsigned bits, const PSimShot& shot, PSimPicture& picture);
