// SPDX-License-Identifier: MIT
#pragma once

#include <PCdPlugins/PTDevice/PTDevice.h>

#include <PCd/property/PDeviceProperty.h>

#include <support/PLogCapture.h>
#include <support/RowTest.h>
#include <support/SimJournal.h>
#include <support/WaitUntil.h>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

/// A camera of a test's scene as JSON. Keys that a test does not set have the values of a small,
/// fast camera.
class SimCameraText {
public:
    SimCameraText& withId(const std::string& id) { return set("id", '"' + id + '"'); }
    /// JSON: a quoted name, or null.
    SimCameraText& withModel(const std::string& json) { return set("model", json); }
    SimCameraText& withSerial(const std::string& serial) {
        return set("serial", '"' + serial + '"');
    }
    SimCameraText& withFlags(const std::string& json) { return set("flags", json); }
    SimCameraText& withResolutions(const std::string& json) { return set("resolutions", json); }
    SimCameraText& withSource(const std::string& json) { return set("source", json); }

    /// Any other key, with its value as JSON.
    SimCameraText& set(const std::string& key, const std::string& value);

    std::string json() const;

private:
    std::map<std::string, std::string> m_values{
        {"id", "\"cam\""},
        {"model", "\"Simulated-T\""},
        {"serial", "\"TESTCAM001\""},
        {"flags", R"(["USB30"])"},
        {"resolutions", R"([{"width": 64, "height": 48, "fps": 200}])"},
        {"bits", "24"},
        {"speedLevels", "4"},
        {"source", R"({"kind": "patches"})"}};
};

/// Each test has its own scene in the simulated SDK, an empty journal, and the log.
class SimFixture : public testing::Test {
protected:
    ~SimFixture() override;

    /// Loads these cameras, and a fault plan (a JSON list).
    void loadScene(const std::vector<SimCameraText>& cameras, const std::string& faults = "[]");

    /// The SDK's enumeration record of camera `index`.
    static ToupcamDeviceV2 record(unsigned index = 0);

    /// Opens camera `index` as the register does; throws if it does not open, which fails the test.
    static std::unique_ptr<PTDevice> open(unsigned index = 0);

    PLogCapture log;
};

/// The items of the plugin's log records, in order.
QStringList ptTexts(const PLogCapture& log);

/// The plugin's newest record as a text; empty if there is none.
QString ptLastText(const PLogCapture& log);

/// The lines written with qDebug(), by the plugin or other code, in order.
QStringList debugTexts(const PLogCapture& log);

/// The plugin's records with this text.
QList<PLogRecord> ptRecords(const PLogCapture& log, const QString& text);

/// The property with this id, cast to its class; throws if the device has none, which fails the
/// test.
template <typename Property = PDeviceProperty>
Property* findProperty(const PDevice& device, const char* id) {
    auto* const property = dynamic_cast<Property*>(device.getProperty(id));
    if (property == nullptr)
        throw std::runtime_error(std::string("the device has no such property as ") + id);
    return property;
}

/// Calls a function when the plugin logs a record that begins with this text, on the thread that
/// logs it: to check what has happened by then, and what has not.
class AtRecord {
public:
    AtRecord(const QString& beginning, std::function<void()> action);
    ~AtRecord();
    AtRecord(const AtRecord&) = delete;
    AtRecord& operator=(const AtRecord&) = delete;

private:
    std::shared_ptr<PLogSink> m_sink;
};
