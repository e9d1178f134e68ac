// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>

#include <memory>
#include <vector>

/// The records of the SDK as JSON, their fields by name. Any thread.
namespace PTraceRecords {

/// All fields.
QJsonObject fromHeader(const BITMAPINFOHEADER& header);
/// Reads what fromHeader() wrote. Returns the name of the first field that is missing or has a
/// value that it cannot have; empty if there is none.
QString toHeader(const QJsonObject& object, BITMAPINFOHEADER& header);

/// All fields.
QJsonObject fromInfo(const ToupcamFrameInfoV2& info);
/// Reads what fromInfo() wrote. Returns the name of what is wrong, as toHeader() does.
QString toInfo(const QJsonObject& object, ToupcamFrameInfoV2& info);

/// The cameras of an enumeration.
QJsonArray fromDevices(const ToupcamDeviceV2* devices, unsigned count);

/// A model with its name.
struct Model {
    QByteArray name;
    ToupcamModelV2 model{};
};
/// The cameras of an enumeration, and their models, to which they point.
struct Devices {
    std::vector<ToupcamDeviceV2> devices;
    std::vector<std::unique_ptr<Model>> models;
};
/// Reads what fromDevices() wrote. Returns the name of what is wrong, as toHeader() does.
QString toDevices(const QJsonArray& array, Devices& devices);

} // namespace PTraceRecords
