// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/ExtendedExposureData.h>

#include <tuple>

bool operator==(const ExtendedExposureData& a, const ExtendedExposureData& b) {
    const auto tied = [](const ExtendedExposureData& d) {
        return std::tie(d.target, d.gain, d.exp, d.autoexpenabled, d.minutes, d.seconds,
                        d.milliseconds, d.microseconds, d.spincount, d.triggermode, d.capturemode);
    };
    return tied(a) == tied(b);
}

QDataStream& operator<<(QDataStream& out, const ExtendedExposureData& data) {
    return out << qint16(data.target) << qint16(data.gain) << data.exp << qint8(data.autoexpenabled)
               << data.minutes << data.seconds << data.milliseconds << data.microseconds
               << data.spincount;
}

QDataStream& operator>>(QDataStream& in, ExtendedExposureData& data) {
    qint16 target = 0;
    qint16 gain = 0;
    in >> target >> gain >> data.exp >> data.autoexpenabled >> data.minutes >> data.seconds >>
        data.milliseconds >> data.microseconds >> data.spincount;
    data.target = quint16(target);
    data.gain = quint16(gain);
    return in;
}

#include "moc_ExtendedExposureData.cpp"
