// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PDevicePropertyGroup.h>
#include <PCd/property/PReadWatch.h>

#include <QStringList>

#include <functional>
#include <initializer_list>

/// A device without a camera: a test sets what it returns, and it records the calls it receives.
class FakeDevice : public PDevice {
public:
    explicit FakeDevice(const QByteArray& model = "Fake", const QByteArray& serial = "1")
        : PDevice(nullptr)
        , m_model(model)
        , m_serial(serial) {}

    QByteArray getModel() const override { return m_model; }
    QByteArray getSerial() const override { return m_serial; }
    bool tryLink() override { return note("link", !refusesLink); }
    bool tryUnlink() override {
        if (whenUnlinked)
            whenUnlinked();
        return note("unlink", !refusesUnlink);
    }
    bool tryStartStream() override {
        if (whenStarted)
            whenStarted();
        return note("start", !refusesStart);
    }
    bool tryStopStream() override {
        if (whenStopped)
            whenStopped();
        return note("stop", !refusesStop);
    }
    PDeviceMode getCurrentMode() override {
        if (!failsToReadMode)
            return mode;
        PReadWatch::reportFailure();
        return modes.value(0);
    }
    bool trySetMode(const PDeviceMode& requested) override {
        if (!refusesMode)
            mode = requested;
        return note("mode", !refusesMode);
    }
    QList<PDeviceMode> getSupportModes() override {
        if (failsToReadModes || returnsUnreadModes)
            PReadWatch::reportFailure();
        if (returnsUnreadModes)
            return {makeMode(0, 0, "0"), makeMode(0, 0, "1")};
        return failsToReadModes ? QList<PDeviceMode>() : modes;
    }
    QList<PDeviceProperty*> getSupportProperties() override {
        note("properties", true);
        return makeProperties ? makeProperties() : QList<PDeviceProperty*>();
    }
    QList<PDevicePropertyGroup*> getSupportPropertyGroups() override {
        note("groups", true);
        return makeGroups ? makeGroups() : QList<PDevicePropertyGroup*>();
    }

    static PDeviceMode makeMode(int width, int height, const QByteArray& id) {
        return {width, height, u"%1x%2"_qs.arg(QString::number(width), QString::number(height)), id,
                24};
    }

    bool refusesLink = false, refusesUnlink = false, refusesStart = false, refusesStop = false;
    bool refusesMode = false;
    bool failsToReadMode = false, failsToReadModes = false;
    bool returnsUnreadModes = false; // as plugins do that cannot read their sizes
    PDeviceMode mode = makeMode(640, 480, "0");
    QList<PDeviceMode> modes{makeMode(640, 480, "0"), makeMode(320, 240, "1")};
    std::function<void()> whenStarted, whenStopped, whenUnlinked;
    std::function<QList<PDeviceProperty*>()> makeProperties;
    std::function<QList<PDevicePropertyGroup*>()> makeGroups;
    QStringList calls;

private:
    bool note(const char* call, bool answer) {
        calls.append(QString::fromLatin1(call));
        return answer;
    }

    QByteArray m_model;
    QByteArray m_serial;
};

/// Calls of a fake device, as it records them.
inline QStringList calls(std::initializer_list<const char*> names) {
    QStringList list;
    for (const char* name : names)
        list.append(QString::fromLatin1(name));
    return list;
}
