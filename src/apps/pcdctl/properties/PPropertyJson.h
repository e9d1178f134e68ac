// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/profile/PDeviceProfileReport.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QStringList>

class PDeviceProperty;

/// The printed form of properties and of the results of setting them. The main thread.
namespace PPropertyJson {

/// A number, true or false, a choice's untranslated name, {x, y, width, height}, null for an
/// action or for what was not read, else text.
QJsonValue value(const QVariant& value, const QVariant& range);
/// {id: value} of the cached values.
QJsonObject values(const QList<PDeviceProperty*>& properties);
/// Everything about a property except its group.
QJsonObject description(const PDeviceProperty& property);

/// [{id, reason}].
QJsonArray reportItems(const QList<PDeviceProfileReport::Item>& items);
/// "id: reason" each.
QStringList reportLines(const QList<PDeviceProfileReport::Item>& items);
/// [id].
QJsonArray ids(const QList<QByteArray>& ids);

/// "integer", "switch" …
QString typeName(const PDeviceProperty& property);
/// "µs"; empty for a number without a unit.
QString unitName(const PDeviceProperty& property);

} // namespace PPropertyJson
