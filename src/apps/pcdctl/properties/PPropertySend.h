// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariant>

class PDeviceProperty;

/// Sends values to the camera, and says in words what it has instead. The main thread.
namespace PPropertySend {

/// Sends any value and reads the camera's value back. Empty if they are equal, else the reason:
/// what the camera has, or that it did not report it.
QString send(PDeviceProperty& property, const QVariant& value);

/// The reason for a value that could not be read back.
QString unreadReason(const QString& requested);

} // namespace PPropertySend
