// SPDX-License-Identifier: MIT
// The plugin's root object: which cameras it finds, keeps and removes, and when it rescans.
#include <PTDevice/SimFixture.h>

#include <PCdPlugins/PTDevice/PTDeviceRegister.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTimer>

#include <gmock/gmock.h>

#include <stdexcept>
#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class PTDeviceRegisterFixture : public SimFixture {
protected:
    static SimCameraText camera(const std::string& id, const std::string& serial) {
        return SimCameraText().withId(id).withSerial(serial);
    }

    static QTimer* rescanTimer(PTDeviceRegister& reg) {
        auto* const timer = reg.findChild<QTimer*>();
        if (timer == nullptr)
            throw std::runtime_error("the register has no timer");
        return timer;
    }

    static PTDevice* firstDevice(const PTDeviceRegister& reg) {
        auto* const device = qobject_cast<PTDevice*>(reg.devices().value(0));
        if (device == nullptr)
            throw std::runtime_error("the register has no device of ours at its beginning");
        return device;
    }

    static QList<QByteArray> ids(const QList<PDevice*>& devices) {
        QList<QByteArray> list;
        for (const PDevice* device : devices)
            list.append(device->deviceId(false));
        return list;
    }
};

using PTRegister = PTDeviceRegisterFixture;

/// A device of another plugin in the same list. Code that casts it to a PTDevice reads the id "cam"
/// wherever it looks.
class ForeignDevice : public PDevice {
public:
    ForeignDevice()
        : PDevice(nullptr) {
        for (std::size_t i = 0; i < sizeof notTheId; ++i)
            notTheId[i] = "cam"[i % 4];
    }
    QByteArray getModel() const override { return "Foreign"; }
    QByteArray getSerial() const override { return "1"; }
    bool tryLink() override { return true; }
    bool tryUnlink() override { return true; }
    bool tryStartStream() override { return false; }
    bool tryStopStream() override { return true; }
    PDeviceMode getCurrentMode() override { return {}; }
    bool trySetMode(const PDeviceMode&) override { return false; }
    QList<PDeviceMode> getSupportModes() override { return {}; }
    QList<PDeviceProperty*> getSupportProperties() override { return {}; }
    QList<PDevicePropertyGroup*> getSupportPropertyGroups() override { return {}; }

    alignas(8) char notTheId[2 * sizeof(PTDevice)];
};

/// A register whose list begins with a device that the SDK does not enumerate.
class MixedRegister : public PTDeviceRegister {
public:
    explicit MixedRegister(PDevice* first)
        : m_first(first) {}
    QList<PDevice*> aliveDevices() override {
        return QList<PDevice*>{m_first} + PTDeviceRegister::aliveDevices();
    }

private:
    PDevice* m_first;
};

/// A device for any record, even of a camera that the SDK does not open.
class DeviceOfRecord : public PTDevice {
public:
    explicit DeviceOfRecord(const ToupcamDeviceV2& record)
        : PTDevice(record) {}
};

/// Counts the devices that are destroyed through it.
class CountingRegister : public PTDeviceRegister {
public:
    void destroyDevice(PDevice* device) override {
        ++destroyed;
        PTDeviceRegister::destroyDevice(device);
    }
    int destroyed = 0;
};

} // namespace

TEST_F(PTRegister, has_its_id_its_timer_and_the_hot_plug_callback_from_construction_on) {
    loadScene({SimCameraText{}});
    {
        PTDeviceRegister reg;
        EXPECT_EQ(reg.id(), "ptregisterid");
        EXPECT_TRUE(rescanTimer(reg)->isSingleShot());
        EXPECT_EQ(rescanTimer(reg)->interval(), 1000);
        EXPECT_EQ(rescanTimer(reg)->parent(), &reg);
        EXPECT_FALSE(rescanTimer(reg)->isActive());
        EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_HotPlug(fn, ctx)"));
        SimJournal::clear();
    }
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_HotPlug(null, null)"));
}

TEST_F(PTRegister, lists_a_device_for_every_camera_in_the_sdks_order) {
    loadScene({camera("b", "S2"), camera("a", "S1"), camera("c", "S3")});
    PTDeviceRegister reg;
    reg.updateDevices();
    EXPECT_THAT(ids(reg.devices()),
                ElementsAre("Simulated-T-S2", "Simulated-T-S1", "Simulated-T-S3"));
}

TEST_F(PTRegister, without_cameras_the_list_is_empty_and_nothing_is_logged) {
    loadScene({});
    PTDeviceRegister reg;
    EXPECT_THAT(reg.aliveDevices(), IsEmpty());
    EXPECT_THAT(ptTexts(log), IsEmpty());
}

TEST_F(PTRegister, updated_twice_it_returns_the_same_objects_and_announces_them_once) {
    loadScene({SimCameraText{}});
    PTDeviceRegister reg;
    reg.updateDevices();
    const QList<PDevice*> first = reg.devices();
    SimJournal::clear();
    EXPECT_EQ(reg.aliveDevices(), first);
    EXPECT_THAT(SimJournal::calls("Toupcam_Open"), IsEmpty()) << "it is not opened again";
    const auto records = ptRecords(log, u"PTDeviceRegister: new device Simulated-T-TESTCAM001"_qs);
    ASSERT_EQ(records.size(), 1);
    EXPECT_THAT(records[0].items,
                ElementsAre(u"PTDeviceRegister: new device"_qs, u"Simulated-T-TESTCAM001"_qs));
    EXPECT_EQ(records[0].line, 186);
    EXPECT_EQ(records[0].file, u"src/PCdPlugins/PTDevice/PTDeviceRegister.cpp"_qs);
    EXPECT_EQ(records[0].function, u"virtual QList<PDevice *> PTDeviceRegister::aliveDevices()"_qs);
}

TEST_F(PTRegister, has_a_new_devices_properties_built_before_anything_else) {
    loadScene({SimCameraText{}});
    PTDeviceRegister reg;
    reg.updateDevices();
    EXPECT_TRUE(firstDevice(reg)->isInitialized());
}

TEST_F(PTRegister, has_read_the_new_devices_properties_when_it_announces_it) {
    loadScene({SimCameraText{}});
    PTDeviceRegister reg;
    std::size_t reads = 0;
    const AtRecord announced(u"PTDeviceRegister: new device"_qs,
                             [&] { reads = SimJournal::calls("Toupcam_get_Contrast").size(); });
    reg.updateDevices();
    EXPECT_EQ(reads, 1u);
}

TEST_F(PTRegister, looks_at_all_128_cameras_that_the_sdk_can_enumerate) {
    std::vector<SimCameraText> cameras;
    for (int i = 0; i < TOUPCAM_MAX; ++i)
        cameras.push_back(camera("cam" + std::to_string(i), "S" + std::to_string(i)));
    loadScene(cameras);
    // None opens, which is faster than 128 devices, and each is logged.
    ToupcamSim_failCall("Toupcam_Open", 0, 0, E_FAIL);
    PTDeviceRegister reg;
    EXPECT_THAT(reg.aliveDevices(), IsEmpty());
    const QString skipped = u"PTDeviceRegister: failed to open device, skipping cam"_qs;
    const QStringList lines = ptTexts(log).filter(skipped);
    ASSERT_EQ(lines.size(), 128);
    EXPECT_EQ(lines.first(), skipped + u"0"_qs);
    EXPECT_EQ(lines.last(), skipped + u"127"_qs);
}

TEST_F(PTRegister, a_camera_that_fails_to_open_is_left_out_and_tried_and_logged_at_every_rescan) {
    loadScene({camera("a", "S1"), camera("b", "S2")});
    ToupcamSim_failCall("Toupcam_Open", 0, 1, E_FAIL);
    PTDeviceRegister reg;
    reg.updateDevices();
    EXPECT_THAT(ids(reg.devices()), ElementsAre("Simulated-T-S2"));
    const QString text = u"PTDeviceRegister: failed to open device, skipping a"_qs;
    ASSERT_EQ(ptRecords(log, text).size(), 1);
    EXPECT_EQ(ptRecords(log, text)[0].line, 172);
    EXPECT_EQ(ptRecords(log, text)[0].items.size(), 2);
    ToupcamSim_failCall("Toupcam_Open", 0, 1, E_FAIL);
    reg.updateDevices();
    EXPECT_EQ(ptRecords(log, text).size(), 2);
    reg.updateDevices();
    EXPECT_THAT(ids(reg.aliveDevices()), ElementsAre("Simulated-T-S1", "Simulated-T-S2"));
}

TEST_F(PTRegister, a_record_without_a_model_name_is_skipped_like_a_camera_that_fails_to_open) {
    loadScene({SimCameraText().withId("nameless").withModel("null"), camera("b", "S2")});
    PTDeviceRegister reg;
    reg.updateDevices();
    EXPECT_THAT(ids(reg.devices()), ElementsAre("Simulated-T-S2"));
    EXPECT_TRUE(log.contains(u"PTDeviceRegister: failed to open device, skipping nameless"_qs));
    EXPECT_THAT(SimJournal::calls("Toupcam_Close"), ElementsAre("Toupcam_Close(h1)"));
}

TEST_F(PTRegister, a_camera_that_neither_opens_nor_closes_again_leaves_the_others_working) {
    loadScene({camera("a", "A000000001").withModel("null"), camera("b", "B000000001")});
    ToupcamSim_failCall("Toupcam_Close", 0, 1, E_FAIL);
    {
        PTDeviceRegister reg;
        reg.updateDevices();
        EXPECT_EQ(ids(reg.devices()), QList<QByteArray>{"Simulated-T-B000000001"});
        EXPECT_EQ(ToupcamSim_openHandles(), 2u) << "the SDK kept the one that failed";
        const QString failure =
            u"Exception while opening a camera: the camera's record has no model name"_qs;
        EXPECT_THAT(ptRecords(log, failure), SizeIs(1));
        PDevice* const other = reg.devices().value(0);
        reg.updateDevices(); // which tries it again
        EXPECT_EQ(reg.devices(), QList<PDevice*>{other});
        EXPECT_TRUE(other->isAnswering());
    }
    EXPECT_EQ(ToupcamSim_openHandles(), 1u) << "the register closed all that it could";
}

TEST_F(PTRegister, a_64_character_id_never_matches_its_own_device_and_is_created_at_every_rescan) {
    const std::string id(64, 'x');
    loadScene({camera(id, "S1")});
    PTDeviceRegister reg;
    reg.updateDevices();
    ASSERT_THAT(reg.devices(), SizeIs(1));
    EXPECT_EQ(reg.findByCameraId(QString::fromStdString(id)), nullptr);
    EXPECT_EQ(reg.findByCameraId(QString(63, u'x')), firstDevice(reg));
    SimJournal::clear();
    reg.aliveDevices();
    EXPECT_THAT(SimJournal::calls("Toupcam_Open"), SizeIs(1));
    EXPECT_TRUE(
        log.contains(u"PTDeviceRegister: failed to open device, skipping "_qs + QString(64, u'x')));
}

TEST_F(PTRegister, a_63_character_id_matches_exactly_and_with_regard_to_case) {
    const std::string id(63, 'x');
    loadScene({camera(id, "S1")});
    PTDeviceRegister reg;
    reg.updateDevices();
    ASSERT_THAT(reg.devices(), SizeIs(1));
    EXPECT_EQ(reg.findByCameraId(QString(63, u'x')), firstDevice(reg));
    EXPECT_EQ(reg.findByCameraId(QString(63, u'X')), nullptr);
    EXPECT_EQ(reg.findByCameraId(QString(62, u'x')), nullptr);
}

TEST_F(PTRegister, devices_of_another_kind_are_never_matched) {
    loadScene({SimCameraText{}});
    MixedRegister reg(new ForeignDevice);
    reg.updateDevices();
    ASSERT_THAT(reg.devices(), SizeIs(2));
    EXPECT_EQ(reg.findByCameraId(u"Foreign"_qs), nullptr);
    EXPECT_EQ(reg.findByCameraId(QString()), nullptr);
    EXPECT_EQ(reg.findByCameraId(u"cam"_qs), reg.devices()[1]);
}

TEST_F(PTRegister, ids_are_latin_1) {
    loadScene({SimCameraText{}});
    ToupcamDeviceV2 named = record();
    qstrncpy(named.id, "K\xf6ln", sizeof named.id);
    ToupcamDeviceV2 namedInTwoBytes = named;
    qstrncpy(namedInTwoBytes.id, "K\xc3\xb6ln", sizeof namedInTwoBytes.id);
    auto* const first = new DeviceOfRecord(named);
    MixedRegister reg(first);
    reg.updateDevices();
    auto* const second = new DeviceOfRecord(namedInTwoBytes);
    MixedRegister otherReg(second);
    otherReg.updateDevices();
    EXPECT_EQ(reg.findByCameraId(u"Köln"_qs), first);
    EXPECT_EQ(otherReg.findByCameraId(u"KÃ¶ln"_qs), second);
    EXPECT_EQ(otherReg.findByCameraId(u"Köln"_qs), nullptr);
}

TEST_F(PTRegister, two_cameras_with_the_same_model_and_serial_have_ids_of_their_own) {
    loadScene({camera("a", "S1"), camera("b", "S1"), camera("c", ""), camera("d", "")});
    PTDeviceRegister reg;
    reg.updateDevices();
    EXPECT_THAT(ids(reg.devices()),
                ElementsAre("Simulated-T-S1", "Simulated-T-S1#2", "Simulated-T", "Simulated-T#2"));
    EXPECT_EQ(ToupcamSim_unplug("a"), 1);
    reg.updateDevices();
    EXPECT_THAT(ids(reg.devices()),
                ElementsAre("Simulated-T-S1#2", "Simulated-T", "Simulated-T#2"));
}

TEST_F(PTRegister, a_vanished_camera_is_removed_and_comes_back_as_a_new_device_with_its_old_id) {
    loadScene({SimCameraText{}});
    PTDeviceRegister reg;
    QSignalSpy added(&reg, &PDeviceRegister::deviceAdded);
    QSignalSpy removed(&reg, &PDeviceRegister::deviceRemoved);
    reg.updateDevices();
    EXPECT_EQ(ToupcamSim_unplug("cam"), 1);
    reg.updateDevices();
    EXPECT_THAT(reg.devices(), IsEmpty());
    EXPECT_EQ(removed.count(), 1);
    EXPECT_EQ(ToupcamSim_plug("cam"), 1);
    reg.updateDevices(); // the removed object has not been deleted yet
    EXPECT_EQ(added.count(), 2);
    EXPECT_THAT(ids(reg.devices()), ElementsAre("Simulated-T-TESTCAM001"));
}

// ---- Disconnect ---------------------------------------------------------------------------------

TEST_F(PTRegister, a_device_that_reports_its_camera_gone_is_removed_without_a_rescan) {
    loadScene({SimCameraText{}, camera("b", "S2")});
    PTDeviceRegister reg;
    reg.updateDevices();
    PTDevice* const device = firstDevice(reg);
    QSignalSpy removed(&reg, &PDeviceRegister::deviceRemoved);
    QSignalSpy destroyed(device, &QObject::destroyed);
    ASSERT_TRUE(device->link().isOk());
    ASSERT_TRUE(device->startStream().isOk());
    SimJournal::clear();
    device->handleSdkDisconnect();
    ASSERT_TRUE(waitUntil([&] { return removed.count() == 1; }));
    EXPECT_THAT(ids(reg.devices()), ElementsAre("Simulated-T-S2"));
    EXPECT_THAT(SimJournal::calls("Toupcam_EnumV2"), IsEmpty());
    ASSERT_TRUE(waitUntil([&] { return destroyed.count() == 1; }));
    EXPECT_THAT(SimJournal::calls("Toupcam_Stop"), SizeIs(1));
    EXPECT_EQ(SimJournal::calls("Toupcam_Close").size(), 1u);
}

TEST_F(PTRegister, a_device_that_reports_it_is_disconnected_is_gone_when_the_signal_returns) {
    loadScene({SimCameraText{}});
    PTDeviceRegister reg;
    reg.updateDevices();
    PTDevice* const device = firstDevice(reg);
    emit device->disconnected(device->deviceId(false));
    EXPECT_THAT(reg.devices(), IsEmpty());
}

TEST_F(PTRegister, devices_are_destroyed_through_the_virtual_operation_however_they_go) {
    loadScene({camera("a", "S1"), camera("b", "S2"), camera("c", "S3")});
    CountingRegister reg;
    reg.updateDevices();
    ASSERT_THAT(reg.devices(), SizeIs(3));
    PTDevice* const device = firstDevice(reg);
    emit device->disconnected(device->deviceId(false));
    EXPECT_EQ(reg.destroyed, 1);
    EXPECT_EQ(ToupcamSim_unplug("b"), 1);
    EXPECT_EQ(ToupcamSim_unplug("a"), 1);
    reg.updateDevices();
    EXPECT_EQ(reg.destroyed, 2);
    reg.registerCleanup();
    EXPECT_EQ(reg.destroyed, 3);
}

TEST_F(PTRegister, a_disconnect_of_an_id_that_is_no_longer_known_is_ignored) {
    loadScene({SimCameraText{}});
    PTDeviceRegister reg;
    reg.updateDevices();
    PTDevice* const device = firstDevice(reg);
    QSignalSpy removed(&reg, &PDeviceRegister::deviceRemoved);
    emit device->disconnected("nobody");
    EXPECT_EQ(removed.count(), 0);
    device->handleSdkDisconnect();
    reg.removeDevice(device);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(removed.count(), 1);
}

TEST_F(PTRegister, unplugging_a_streaming_camera_removes_it_and_replugging_brings_it_back) {
    loadScene({SimCameraText{}});
    PTDeviceRegister reg;
    reg.updateDevices();
    QSignalSpy added(&reg, &PDeviceRegister::deviceAdded);
    QSignalSpy removed(&reg, &PDeviceRegister::deviceRemoved);
    PTDevice* const device = firstDevice(reg);
    ASSERT_TRUE(device->link().isOk());
    ASSERT_TRUE(device->startStream().isOk());
    ASSERT_TRUE(waitUntil([&] { return device->frameLedger().produced > 2; }));
    EXPECT_EQ(ToupcamSim_unplug("cam"), 1);
    ASSERT_TRUE(waitUntil([&] { return removed.count() == 1; }));
    EXPECT_EQ(ToupcamSim_plug("cam"), 1);
    ASSERT_TRUE(waitUntil([&] { return added.count() == 1; }));
    PTDevice* const again = firstDevice(reg);
    EXPECT_EQ(again->deviceId(false), "Simulated-T-TESTCAM001");
    ASSERT_TRUE(again->link().isOk());
    ASSERT_TRUE(again->startStream().isOk());
    EXPECT_TRUE(waitUntil([&] { return again->frameLedger().produced > 2; }));
}

// ---- Hot plug -----------------------------------------------------------------------------------

TEST_F(PTRegister, a_hot_plug_event_only_starts_the_timer_and_on_the_registers_thread) {
    loadScene({SimCameraText{}});
    PTDeviceRegister reg;
    std::thread sdkThread([&] { PTDeviceRegister::hotPlugCallback(&reg); });
    sdkThread.join();
    EXPECT_FALSE(rescanTimer(reg)->isActive());
    ASSERT_TRUE(waitUntil([&] { return rescanTimer(reg)->isActive(); }));
    EXPECT_EQ(rescanTimer(reg)->interval(), 1000) << "the start leaves it as it was";
    EXPECT_THAT(reg.devices(), IsEmpty());
}

TEST_F(PTRegister, a_hot_plug_event_without_a_context_does_nothing) {
    PTDeviceRegister::hotPlugCallback(nullptr);
}

TEST_F(PTRegister, two_hot_plug_events_300_ms_apart_yield_one_rescan_1000_ms_after_the_second) {
    loadScene({SimCameraText{}});
    PTDeviceRegister reg;
    SimJournal::clear();
    QElapsedTimer sinceSecond;
    ToupcamSim_fireHotPlug();
    QTimer::singleShot(300, &reg, [&] {
        ToupcamSim_fireHotPlug();
        sinceSecond.start();
    });
    ASSERT_TRUE(waitUntil([&] { return !SimJournal::calls("Toupcam_EnumV2").empty(); }));
    // A lower bound only: the timer may be late, never early (coarse timers are within 5 %).
    EXPECT_GE(sinceSecond.elapsed(), 950);
    EXPECT_FALSE(rescanTimer(reg)->isActive()) << "and none is left";
    EXPECT_THAT(SimJournal::calls("Toupcam_EnumV2"), SizeIs(1));
    EXPECT_THAT(reg.devices(), SizeIs(1));
}

namespace {

/// Fires a burst of hot-plug events while it enumerates.
class BurstRegister : public PTDeviceRegister {
public:
    QList<PDevice*> aliveDevices() override {
        if (scans++ == 0) {
            for (int i = 0; i < 20; ++i)
                ToupcamSim_fireHotPlug();
            QCoreApplication::processEvents();
        }
        return PTDeviceRegister::aliveDevices();
    }
    int scans = 0;
};

} // namespace

TEST_F(PTRegister, a_second_burst_during_a_rescan_yields_exactly_one_more) {
    loadScene({SimCameraText{}});
    BurstRegister reg;
    reg.updateDevices();
    EXPECT_EQ(reg.scans, 1);
    ASSERT_TRUE(waitUntil([&] { return reg.scans == 2; }));
    EXPECT_FALSE(waitUntil([&] { return reg.scans > 2; }, std::chrono::milliseconds(1300)));
    EXPECT_THAT(reg.devices(), SizeIs(1));
}

TEST_F(PTRegister, destroyed_while_the_hot_plug_thread_keeps_calling_it_ends_cleanly) {
    loadScene({SimCameraText{}});
    for (int round = 0; round < 50; ++round) {
        auto reg = std::make_unique<PTDeviceRegister>();
        std::atomic<bool> calling{false};
        void* const context = reg.get();
        // The SDK's thread may be in the callback, or about to enter it with this context.
        std::thread sdkThread([&] {
            for (int i = 0; i < 20; ++i) {
                PTDeviceRegister::hotPlugCallback(context);
                calling = true;
            }
        });
        while (!calling)
            std::this_thread::yield();
        reg.reset();
        sdkThread.join();
        QCoreApplication::sendPostedEvents();
    }
    EXPECT_THAT(SimJournal::calls("Toupcam_HotPlug"), SizeIs(100));
}

TEST_F(PTRegister, a_call_that_comes_after_its_end_does_nothing) {
    auto reg = std::make_unique<PTDeviceRegister>();
    void* const context = reg.get();
    reg.reset();
    SimJournal::clear();
    PTDeviceRegister::hotPlugCallback(context);
    QCoreApplication::sendPostedEvents();
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
}

TEST_F(PTRegister, destroyed_with_streaming_devices_closes_all_of_them) {
    loadScene({camera("a", "S1"), camera("b", "S2")});
    {
        PTDeviceRegister reg;
        reg.updateDevices();
        for (PDevice* device : reg.devices()) {
            ASSERT_TRUE(device->link().isOk());
            ASSERT_TRUE(device->startStream().isOk());
        }
        SimJournal::clear();
    }
    EXPECT_THAT(SimJournal::calls("Toupcam_Stop"), SizeIs(2));
    EXPECT_THAT(SimJournal::calls("Toupcam_Close"), SizeIs(2));
    ASSERT_FALSE(SimJournal::lines().empty());
    EXPECT_EQ(SimJournal::lines().front(), "Toupcam_HotPlug(null, null)");
}
