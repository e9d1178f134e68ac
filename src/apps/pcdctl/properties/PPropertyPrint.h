// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>

class PDeviceProperty;

/// Prints what the camera has for these properties, which are read again, on the standard output:
/// "id=value" each, or as JSON {camera, properties: {id: value}} with `more` in it. The main
/// thread.
void printPropertyValues(const QString& cameraId, const QList<PDeviceProperty*>& properties,
                         bool json, const QJsonObject& more = {});
