// SPDX-License-Identifier: MIT
#include <gstreamer/camera/PGstCamera.h>

#include <gstreamer/GstFixture.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

using testing::HasSubstr;

namespace {

using Code = PGstCamera::Outcome::Code;
using Item = PGstFrameQueue::Item;

class PGstCameraTest : public GstFixture {
protected:
    PGstCameraTest()
        : m_reader([this] { read(); }) {}
    ~PGstCameraTest() override {
        queue->setFlushing(true);
        m_reader.join();
    }

    std::vector<Item> items() {
        const std::lock_guard lock(m_mutex);
        return m_items;
    }
    /// Waits, with events, for an item of this kind after the first `skipped` items.
    bool comes(Item::Kind kind, std::size_t skipped = 0) {
        return waitUntil([&] {
            const std::vector<Item> all = items();
            return std::any_of(all.begin() + std::ptrdiff_t(std::min(skipped, all.size())),
                               all.end(), [kind](const Item& item) { return item.kind == kind; });
        });
    }

    std::shared_ptr<PGstFrameQueue> queue = std::make_shared<PGstFrameQueue>();
    PGstCamera camera{queue};

private:
    /// As the streaming thread does.
    void read() {
        while (const std::optional<Item> item = queue->take()) {
            const std::lock_guard lock(m_mutex);
            m_items.push_back(*item);
        }
    }

    std::mutex m_mutex; ///< guards the items
    std::vector<Item> m_items;
    std::thread m_reader;
};

} // namespace

TEST_F(PGstCameraTest, opens_streams_and_closes) {
    ASSERT_EQ(camera.open(options()).code, Code::Done);
    EXPECT_EQ(camera.id(), u"Simulated-T-T1"_qs);
    EXPECT_EQ(camera.modes().size(), 2);
    queue->begin();
    ASSERT_TRUE(camera.start().isOk());
    ASSERT_TRUE(comes(Item::Kind::Frame));
    EXPECT_EQ(items().front().frame.image.width(), 64);
    EXPECT_TRUE(camera.stop().isOk());
    camera.close();
    EXPECT_EQ(ToupcamSim_openHandles(), presentCameras);
}

TEST_F(PGstCameraTest, outcomes_say_what_was_wrong) {
    PGstOptions wrong = options();
    wrong.camera = u"9"_qs;
    EXPECT_EQ(camera.open(wrong).code, Code::NotFound);
    wrong = options();
    wrong.settings = u"contrast=500"_qs;
    EXPECT_EQ(camera.open(wrong).code, Code::WrongSettings);
    ASSERT_EQ(camera.open(options()).code, Code::Done);
    PGstCamera other(queue);
    EXPECT_EQ(other.open(options()).code, Code::Busy);
    ToupcamSim_failCall("Toupcam_StartPushModeV2", 0, 0, E_FAIL);
    ToupcamSim_failCall("Toupcam_StartPushMode", 0, 0, E_FAIL);
    EXPECT_THAT(camera.start().reason().toStdString(), HasSubstr("camera Simulated-T-T1: "));
}

TEST_F(PGstCameraTest, a_camera_that_is_plugged_in_again_has_its_settings_again) {
    PGstOptions waiting = options();
    waiting.onUnplug = PGstOptions::OnUnplug::Wait;
    ASSERT_EQ(camera.open(waiting).code, Code::Done);
    ASSERT_TRUE(camera.setMode(camera.modes().last()).isOk());
    ASSERT_TRUE(camera.apply(u"negative=on"_qs).isOk());
    queue->begin();
    ASSERT_TRUE(camera.start().isOk());
    ToupcamSim_unplug("one");
    ASSERT_TRUE(comes(Item::Kind::Unplugged));
    EXPECT_EQ(camera.mode().width, 0);
    EXPECT_FALSE(camera.fire(1).isOk());
    const std::size_t before = items().size();
    ToupcamSim_plug("one");
    ASSERT_TRUE(comes(Item::Kind::Plugged, before));
    ASSERT_TRUE(comes(Item::Kind::Frame, before));
    EXPECT_EQ(camera.mode().width, 32);
    const PImage image = items().back().frame.image;
    EXPECT_EQ(image.width(), 32);
    EXPECT_EQ(image.rawData(PDIP::AccessMode::Read).constData()[0], 255); // black, made negative
}

TEST_F(PGstCameraTest, a_camera_that_goes_again_while_it_is_opened_is_waited_for) {
    PGstOptions waiting = options();
    waiting.onUnplug = PGstOptions::OnUnplug::Wait;
    waiting.settings = u"contrast=20"_qs;
    ASSERT_EQ(camera.open(waiting).code, Code::Done);
    queue->begin();
    ASSERT_TRUE(camera.start().isOk());
    ToupcamSim_unplug("one");
    ASSERT_TRUE(comes(Item::Kind::Unplugged));
    const std::size_t before = items().size();
    ToupcamSim_setHook([](const char* name, int moment, HRESULT*) {
        if (moment == TOUPCAMSIM_BEFORE_CALL && std::string("Toupcam_put_Contrast") == name)
            ToupcamSim_unplug("one");
        return TOUPCAMSIM_PASS;
    });
    ToupcamSim_plug("one");
    EXPECT_TRUE(waitUntil([] { return ToupcamSim_plug("one") == 1; })); // it went again
    ToupcamSim_setHook(nullptr);
    EXPECT_TRUE(comes(Item::Kind::Frame, before));
    for (const Item& item : items())
        EXPECT_NE(item.kind, Item::Kind::Failed) << item.text.toStdString();
    EXPECT_EQ(camera.value("contrast"), u"20"_qs);
}

TEST_F(PGstCameraTest, of_a_setting_that_changed_often_only_the_last_value_is_set_again) {
    PGstOptions waiting = options();
    waiting.onUnplug = PGstOptions::OnUnplug::Wait;
    ASSERT_EQ(camera.open(waiting).code, Code::Done);
    ToupcamSim_unplug("one");
    ASSERT_TRUE(comes(Item::Kind::Unplugged));
    // Nothing checks it while the camera is away; set again, it would end the stream.
    ASSERT_TRUE(camera.apply(u"contrast=500"_qs).isOk());
    ASSERT_TRUE(camera.apply(u"contrast=20"_qs).isOk());
    ToupcamSim_plug("one");
    ASSERT_TRUE(waitUntil([this] { return items().size() >= 2; }));
    EXPECT_EQ(items()[1].kind, Item::Kind::Plugged) << items()[1].text.toStdString();
    EXPECT_EQ(camera.value("contrast"), u"20"_qs);
}

TEST_F(PGstCameraTest, after_a_start_that_failed_each_frame_comes_once) {
    ASSERT_EQ(camera.open(options()).code, Code::Done);
    ToupcamSim_failCall("Toupcam_StartPushMode", 0, 1, E_FAIL);
    queue->begin();
    ASSERT_FALSE(camera.start().isOk());
    ASSERT_TRUE(camera.start().isOk());
    ASSERT_TRUE(waitUntil([this] { return items().size() >= 6; }));
    std::set<quint64> numbers;
    const std::vector<Item> all = items();
    for (const Item& item : all)
        numbers.insert(item.frame.stamp->sequence);
    EXPECT_EQ(numbers.size(), all.size());
}

TEST_F(PGstCameraTest, a_number_of_triggers_that_cannot_be_is_refused_with_the_range) {
    PGstOptions triggered = options();
    triggered.trigger = PGstOptions::Trigger::Software;
    ASSERT_EQ(camera.open(triggered).code, Code::Done);
    queue->begin();
    ASSERT_TRUE(camera.start().isOk());
    for (const int frames : {-1, PTriggerControl::endless + 1}) {
        const std::string reason = camera.fire(frames).reason().toStdString();
        EXPECT_THAT(reason, HasSubstr(std::to_string(frames)));
        EXPECT_THAT(reason, HasSubstr("expected 0 to 65534, or 65535"));
    }
    EXPECT_TRUE(camera.fire(PTriggerControl::endless).isOk());
    EXPECT_TRUE(camera.fire(0).isOk());
}

TEST_F(PGstCameraTest, an_unplugged_camera_that_is_not_waited_for_stays_closed) {
    ASSERT_EQ(camera.open(options()).code, Code::Done);
    ToupcamSim_unplug("one");
    ASSERT_TRUE(comes(Item::Kind::Unplugged));
    EXPECT_THAT(camera.start().reason().toStdString(), HasSubstr("unplugged"));
}
