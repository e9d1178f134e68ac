// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

class PTDevice;
class QWidget;

/// Compares what the plugin's own panels (exposure, fan, cooler, light frequency) show with what
/// the camera has. The main thread.
namespace CompositeTruth {

/// What the panels show and the camera, as it is read now and without a fault, does not have. Not
/// compared: a panel of a property that is unread, which must show zeros; what the camera holds no
/// longer while frames are triggered, what it chooses itself, and a number whose range was not
/// read, to which the panel restricts it; the fan's level while it is off, and the cooler's target,
/// which are not the camera's.
QStringList findLies(const QWidget& panel, PTDevice& device);
/// The number of controls that findLies() compares if all of them can be.
int countControls(const QWidget& panel);

} // namespace CompositeTruth
