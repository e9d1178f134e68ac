// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

class PDevice;
class QWidget;

/// Compares what the editors of a panel show with what the camera has. The main thread.
namespace PanelTruth {

/// The number fields, regions, switches and lists that show neither the camera's value, as it is
/// read now and without a fault, nor that it was not read. For panels of the plugin's own see
/// CompositeTruth.
QStringList findLies(const QWidget& panel, PDevice& device);
/// The number of editors that findLies() compares.
int countEditors(const QWidget& panel, const PDevice& device);

} // namespace PanelTruth
