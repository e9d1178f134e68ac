// SPDX-License-Identifier: MIT
#include <PTDevice/SimFixture.h>

#include <utility>

namespace {

class ActionSink : public PLogSink {
public:
    ActionSink(QString beginning, std::function<void()> action)
        : m_beginning(std::move(beginning))
        , m_action(std::move(action)) {}

    void write(const PLogRecord& record) override {
        if (record.source == u"PTDevice"_qs && record.text().startsWith(m_beginning))
            m_action();
    }

private:
    QString m_beginning;
    std::function<void()> m_action;
};

} // namespace

std::string SimCameraText::json() const {
    std::string members;
    for (const auto& [key, value] : m_values)
        members += (members.empty() ? "" : ", ") + ('"' + key + "\": ") + value;
    return '{' + members + '}';
}

SimCameraText& SimCameraText::set(const std::string& key, const std::string& value) {
    m_values[key] = value;
    return *this;
}

SimFixture::~SimFixture() {
    ToupcamSim_reset();
}

void SimFixture::loadScene(const std::vector<SimCameraText>& cameras, const std::string& faults) {
    std::string list;
    for (const SimCameraText& camera : cameras)
        list += (list.empty() ? "" : ", ") + camera.json();
    const std::string scene = R"({"cameras": [)" + list + R"(], "faults": )" + faults + "}";
    const char* const problem = ToupcamSim_loadScene(scene.c_str());
    ASSERT_EQ(problem, nullptr) << problem;
    ToupcamSim_clearJournal();
}

ToupcamDeviceV2 SimFixture::record(unsigned index) {
    ToupcamDeviceV2 records[TOUPCAM_MAX] = {};
    const unsigned count = Toupcam_EnumV2(records);
    EXPECT_LT(index, count);
    ToupcamSim_clearJournal();
    return records[index];
}

std::unique_ptr<PTDevice> SimFixture::open(unsigned index) {
    std::unique_ptr<PTDevice> device(PTDevice::create(record(index)));
    if (device == nullptr)
        throw std::runtime_error("the camera does not open");
    return device;
}

QStringList ptTexts(const PLogCapture& log) {
    return log.texts(u"PTDevice"_qs);
}

QString ptLastText(const PLogCapture& log) {
    const QStringList texts = ptTexts(log);
    return texts.isEmpty() ? QString() : texts.last();
}

QStringList debugTexts(const PLogCapture& log) {
    QStringList texts;
    for (const PLogRecord& record : log.records(u"qt"_qs)) {
        if (record.level == PLogLevel::Debug)
            texts.append(record.text());
    }
    return texts;
}

QList<PLogRecord> ptRecords(const PLogCapture& log, const QString& text) {
    QList<PLogRecord> found;
    for (const PLogRecord& record : log.records(u"PTDevice"_qs)) {
        if (record.text() == text)
            found.append(record);
    }
    return found;
}

AtRecord::AtRecord(const QString& beginning, std::function<void()> action)
    : m_sink(std::make_shared<ActionSink>(beginning, std::move(action))) {
    PLog::addSink(m_sink);
}

AtRecord::~AtRecord() {
    PLog::removeSink(m_sink);
}
