// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QJsonObject>
#include <QList>
#include <QString>

class PDeviceProperty;

/// Reads these properties again and prints their values on standard output: "id=value" each, or as
/// JSON {camera, properties: {id: value}} with `more` added. Fails, with the names of those that
/// the camera did not report, which have no line, and null in JSON. The main thread.
PStatus printPropertyValues(const QString& cameraId, const QList<PDeviceProperty*>& properties,
                            bool json, const QJsonObject& more = {});
