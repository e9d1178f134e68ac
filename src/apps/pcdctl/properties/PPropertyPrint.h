// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>

class PDeviceProperty;

/// Reads these properties again and prints their values on standard output: "id=value" each, or as
/// JSON {camera, properties: {id: value}} with `more` added. The main thread.
void printPropertyValues(const QString& cameraId, const QList<PDeviceProperty*>& properties,
                         bool json, const QJsonObject& more = {});
