// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/TestRoles.h>

#include <PCd/frame/PDeviceFrame.h>

#include <QObject>

#include <algorithm>
#include <chrono>

/// The timeout for writing frames, long enough for a busy machine.
constexpr std::chrono::milliseconds longestFrameWait = std::chrono::seconds(60);

/// A composite value with the fields of a camera's exposure, like those of plugins.
struct TestExposureRecord {
    Q_GADGET
    Q_PROPERTY(int gain MEMBER gain)
    Q_PROPERTY(double exp MEMBER exp)
    Q_PROPERTY(bool autoexpenabled MEMBER autoexpenabled)
    Q_PROPERTY(int minutes MEMBER minutes)
    Q_PROPERTY(int seconds MEMBER seconds)
    Q_PROPERTY(int milliseconds MEMBER milliseconds)
    Q_PROPERTY(int microseconds MEMBER microseconds)
    Q_PROPERTY(int spincount MEMBER spincount)
    Q_PROPERTY(int triggermode MEMBER triggermode)
    Q_PROPERTY(int capturemode MEMBER capturemode)

public:
    int gain = 120;
    double exp = 1.5;
    bool autoexpenabled = false;
    int minutes = 0;
    int seconds = 0;
    int milliseconds = 0;
    int microseconds = 0;
    int spincount = 1;
    int triggermode = 0;
    int capturemode = 0;

    friend bool operator==(const TestExposureRecord& a, const TestExposureRecord& b) {
        return a.gain == b.gain && a.exp == b.exp && a.autoexpenabled == b.autoexpenabled &&
               a.capturemode == b.capturemode;
    }
};

using TestSettings = QList<std::pair<QByteArray, QVariant>>;

inline std::shared_ptr<const PDeviceSettings> makeSettings(const TestSettings& values) {
    auto settings = std::make_shared<PDeviceSettings>();
    settings->mode = {3, 2, u"3x2"_qs, "0", 24};
    settings->values = values;
    for (const auto& value : values) {
        if (testRoles().contains(value.first))
            settings->roles.insert(value.first,
                                   QVariant::fromValue(testRoles().value(value.first)));
    }
    return settings;
}

/// A frame of one colour (blue, green and red are its bytes), by default of 3 x 2 pixels, with a
/// stamp: this number, this time after the beginning of 2026.
inline PDeviceFrame testFrame(quint64 sequence, std::chrono::milliseconds arrived,
                              std::shared_ptr<const PDeviceSettings> settings = makeSettings({}),
                              PDIP::ColorFormat format = PDIP::ColorFormat::Bgr, int width = 3,
                              int height = 2) {
    PDeviceFrame frame;
    if (!frame.image.create(width, height, format))
        throw std::bad_alloc();
    const PDIP::ImageRawData data = frame.image.rawData(PDIP::AccessMode::Write);
    std::fill_n(data.data(), data.size(), static_cast<unsigned char>(sequence));
    auto stamp = std::make_shared<PFrameStamp>();
    stamp->sequence = sequence;
    stamp->arrived = std::chrono::steady_clock::time_point(std::chrono::hours(1) + arrived);
    stamp->arrivedUtc =
        QDateTime(QDate(2026, 1, 1), QTime(0, 0), Qt::UTC).addMSecs(arrived.count());
    stamp->settings = std::move(settings);
    frame.stamp = std::move(stamp);
    return frame;
}
