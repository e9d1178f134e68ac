// SPDX-License-Identifier: MIT
#pragma once

/// The pieces of work whose instructions are counted, each done `count` times with the plugin and
/// the stub SDK. Everything happens on the calling thread, in the same order each time, and nothing
/// depends on the clock. They throw std::runtime_error if the work was not done.
namespace CountedWork {

/// Frames from the SDK's callback through one frame sink to imageChanged(), with one slot.
void deliverFrames(int count);

/// Sets of a number through the host to the SDK call, each with its report of the change.
void setProperty(int count);

/// Cameras that are found and opened, each with its catalogue of properties and groups; as many as
/// the SDK can list.
void openCameras(int count);

} // namespace CountedWork
