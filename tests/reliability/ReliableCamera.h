// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// The small and fast simulated camera of these tests: it has every feature, and its pictures never
/// depend on settings of the light, so that nothing happens by itself. Any thread.
namespace ReliableCamera {

/// Its id in the SDK.
constexpr auto id = "reliable";
constexpr int width = 64;
constexpr int height = 48;

/// Puts a scene with this camera alone into the simulator; throws std::runtime_error if it is
/// refused. Not from a callback. `source`: what is under the lens, as JSON.
void install(const QByteArray& source = R"({"kind": "patches"})");

/// Pushes a frame of its largest mode, or a still, in push mode, and waits until it has been taken.
void pushFrame();
void pushStill();
/// Pushes what is no frame: a header that declares more than there is.
void pushMalformed();
/// Reports through the data callback that the camera is gone, though it is not.
void pushLoss();

} // namespace ReliableCamera
