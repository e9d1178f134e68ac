// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

#include <QByteArray>
#include <QJsonObject>

#include <optional>
#include <vector>

/// Pixels of a trace.
struct PReplayPixels {
    std::size_t bytes = 0; ///< 0: not known
    quint32 checksum = 0;
    std::optional<qint64> offset; ///< in the file of frames; none: not recorded
};

/// A call of a trace. A value type; any thread.
struct PReplayCall {
    int line = 0;       ///< where it begins in the file
    int returnLine = 0; ///< where it ends; 0: it did not return
    qint64 at = 0;      ///< when it began, microseconds since the trace did
    QString name;
    int handle = 0; ///< of which camera; 0: of none
    QJsonObject in;
    QJsonObject out;
    QJsonValue result = QJsonValue::Undefined;
    std::optional<PReplayPixels> pixels; ///< those of a pulled frame
    bool isChange = false;

    /// The call as a reader of code would write it: "Toupcam_put_Hue(h=h1, Hue=3)".
    static QString toText(const QString& name, const QJsonObject& in);
};

/// A run of a callback in a trace.
struct PReplayCallback {
    /// Which callback.
    enum class Kind { HotPlug, Data, Event, Exposure, TempTint };

    int line = 0;
    qint64 at = 0; ///< microseconds since the trace began
    Kind kind = Kind::HotPlug;
    int handle = 0;
    std::optional<PReplayPixels> pixels;    ///< Data; none: a null pointer
    std::optional<BITMAPINFOHEADER> header; ///< Data; none: a null pointer
    bool isSnapshot = false;                ///< Data
    unsigned event = 0;                     ///< Event
    int temperature = 0;                    ///< TempTint
    int tint = 0;                           ///< TempTint
};

/// A trace as it was read. A value type.
struct PReplayRecording {
    QJsonObject header;
    std::vector<PReplayCall> calls;         ///< in the order of their lines
    std::vector<PReplayCallback> callbacks; ///< likewise
    QString notice; ///< what the user should know about the file; empty: nothing
};
