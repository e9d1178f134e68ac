// SPDX-License-Identifier: MIT
#pragma once

/// The curves of the program; each function adds those of one plot. The main thread.
namespace Growth {

/// Enumerating and opening 1 to 128 cameras.
void addCameras();
/// Frames of 0.3 to 61 megapixels, from the memory of the SDK to the host's listeners.
void addFrames();
/// 10 to 2000 frames a second.
void addRates();
/// Recordings of a hundred to a million frames.
void addRecordings();

} // namespace Growth
