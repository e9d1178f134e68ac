// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QDataStream>
#include <QMetaType>

/// How a frame is exposed: automatically or manually, as free-running video or on a trigger. The
/// value of "extexposure". A value type; any thread.
struct PCD_EXPORT ExtendedExposureData {
    Q_GADGET
    // In triggered capture the camera has only the exposure time of a triggered frame, and no
    // automatic exposure: the host keeps those of the video.
    Q_CLASSINFO("HostFields", "exp autoexpenabled")
    Q_CLASSINFO("HostFieldsWhile", "capturemode=1")
    // The times as long as the SDK's 32 bits of microseconds hold, the rest as in the panel.
    Q_CLASSINFO("Ranges", "exp=0..4294967 minutes=0..71 seconds=0..60 milliseconds=0..999 "
                          "microseconds=0..999 spincount=1..999 triggermode=0..1 capturemode=0..1")
    Q_PROPERTY(quint16 target MEMBER target)
    Q_PROPERTY(quint16 gain MEMBER gain)
    Q_PROPERTY(double exp MEMBER exp)
    Q_PROPERTY(bool autoexpenabled MEMBER autoexpenabled)
    Q_PROPERTY(qint32 minutes MEMBER minutes)
    Q_PROPERTY(qint32 seconds MEMBER seconds)
    Q_PROPERTY(qint32 milliseconds MEMBER milliseconds)
    Q_PROPERTY(qint32 microseconds MEMBER microseconds)
    Q_PROPERTY(qint32 spincount MEMBER spincount)
    Q_PROPERTY(qint32 triggermode MEMBER triggermode STORED false)
    Q_PROPERTY(qint32 capturemode MEMBER capturemode STORED false)

public:
    /// Values of `triggermode`.
    enum TriggerMode { SoftwareTrigger = 0, ExternalTrigger = 1 };
    /// Values of `capturemode`.
    enum CaptureMode { Video = 0, Trigger = 1 };

    quint16 target = 100;       ///< brightness that auto-exposure aims at
    quint16 gain = 120;         ///< analogue gain, per cent
    double exp = 1.0;           ///< manual exposure time, milliseconds
    bool autoexpenabled = true; ///< automatic exposure
    qint32 minutes = 0;         ///< parts of the exposure time of a triggered frame
    qint32 seconds = 5;
    qint32 milliseconds = 0;
    qint32 microseconds = 0;
    qint32 spincount = 1; ///< frames of a triggered sequence
    qint32 triggermode = SoftwareTrigger;
    qint32 capturemode = Video;

    friend PCD_EXPORT bool operator==(const ExtendedExposureData& a, const ExtendedExposureData& b);
    friend bool operator!=(const ExtendedExposureData& a, const ExtendedExposureData& b) {
        return !(a == b);
    }
};

/// QDataStream format, 33 bytes: target and gain as qint16, exp as double, autoexpenabled as qint8,
/// then minutes, seconds, milliseconds, microseconds and spincount as qint32. The modes are not
/// part of it: reading leaves them unchanged. If the data ends early, the QDataStream's status is
/// set.
PCD_EXPORT QDataStream& operator<<(QDataStream& out, const ExtendedExposureData& data);
PCD_EXPORT QDataStream& operator>>(QDataStream& in, ExtendedExposureData& data);

Q_DECLARE_METATYPE(ExtendedExposureData)
