// SPDX-License-Identifier: MIT
#include <PCd/device/PDeviceRegister.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeRegister.h>

#include <support/PLogCapture.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>
#include <support/WaitUntil.h>

#include <QCoreApplication>
#include <QPointer>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

/// A register with three devices to find, and a record of the signals it emits.
class RegisterFixture : public testing::Test {
protected:
    RegisterFixture() {
        QObject::connect(&fakes, &PDeviceRegister::deviceAdded,
                         [this](PDevice* device) { added.append(device); });
        QObject::connect(&fakes, &PDeviceRegister::deviceRemoved,
                         [this](PDevice* device) { removed.append(device); });
    }
    ~RegisterFixture() override {
        // Devices that the register never took.
        for (const QPointer<FakeDevice>& device : {a, b, c}) {
            if (device && device->parent() == nullptr)
                delete device;
        }
    }

    void find(const QList<PDevice*>& present) {
        fakes.alive = present;
        fakes.updateDevices();
    }
    static void runDeferredDeletes() {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    QPointer<FakeDevice> a = new FakeDevice("A");
    QPointer<FakeDevice> b = new FakeDevice("B");
    QPointer<FakeDevice> c = new FakeDevice("C");
    FakeRegister fakes;
    QList<PDevice*> added, removed;
};

using Devices = QList<PDevice*>;

} // namespace

using PDeviceRegisterTest = RegisterFixture;

// ---- Merging.

TEST_F(PDeviceRegisterTest, has_no_device_by_itself) {
    PDeviceRegister plain;
    plain.updateDevices();
    EXPECT_TRUE(plain.devices().isEmpty());
}

TEST_F(PDeviceRegisterTest, adds_what_is_there_and_emits_each_once) {
    find({a, b});
    EXPECT_EQ(fakes.devices(), (Devices{a, b}));
    EXPECT_EQ(added, (Devices{a, b}));
    EXPECT_TRUE(removed.isEmpty());
}

TEST_F(PDeviceRegisterTest, keeps_what_is_still_there_without_a_signal) {
    find({a, b});
    added.clear();
    find({b, a});
    EXPECT_EQ(fakes.devices(), (Devices{a, b}));
    EXPECT_TRUE(added.isEmpty());
    EXPECT_TRUE(removed.isEmpty());
}

TEST_F(PDeviceRegisterTest, removes_what_is_gone_and_adds_what_is_new_at_once) {
    find({a, b});
    added.clear();
    find({b, c});
    EXPECT_EQ(fakes.devices(), (Devices{b, c}));
    EXPECT_EQ(added, (Devices{c}));
    EXPECT_EQ(removed, (Devices{a}));
}

TEST_F(PDeviceRegisterTest, finds_its_devices_when_it_is_initialised) {
    fakes.alive = {a};
    fakes.registerInitialize();
    EXPECT_EQ(fakes.devices(), (Devices{a}));
}

TEST_F(PDeviceRegisterTest, removes_every_device_when_it_is_cleaned_up) {
    find({a, b});
    fakes.registerCleanup();
    EXPECT_TRUE(fakes.devices().isEmpty());
    EXPECT_EQ(removed.size(), 2);
    EXPECT_TRUE(a->isGone());
    EXPECT_TRUE(b->isGone());
}

namespace {

/// Records the devices that are destroyed through it.
class DestroyingRegister : public FakeRegister {
public:
    void destroyDevice(PDevice* device) override {
        destroyed.append(device);
        FakeRegister::destroyDevice(device);
    }
    QList<PDevice*> destroyed;
};

} // namespace

TEST_F(PDeviceRegisterTest, destroys_devices_by_the_operation_that_a_register_may_override) {
    DestroyingRegister reg;
    reg.alive = {a, b, c};
    reg.updateDevices();
    reg.removeDevice(a);
    EXPECT_EQ(reg.destroyed, (Devices{a}));
    reg.alive = {c};
    reg.updateDevices();
    EXPECT_EQ(reg.destroyed, (Devices{a, b}));
    reg.registerCleanup();
    EXPECT_EQ(reg.destroyed, (Devices{a, b, c}));
}

TEST_F(PDeviceRegisterTest, defers_an_update_from_inside_another_until_that_has_ended) {
    bool nestedSawTheList = true;
    fakes.whenAsked = [&] {
        if (fakes.searches > 1)
            return;
        fakes.updateDevices();
        nestedSawTheList = !fakes.devices().isEmpty();
    };
    find({a});
    EXPECT_FALSE(nestedSawTheList);
    EXPECT_EQ(fakes.searches, 2);
    EXPECT_EQ(added, (Devices{a}));
}

TEST_F(PDeviceRegisterTest, defers_an_update_by_a_listener_and_finds_what_is_new_then) {
    QObject::connect(&fakes, &PDeviceRegister::deviceAdded, [&](PDevice* device) {
        if (device != a)
            return;
        fakes.alive = {a, b, c};
        fakes.updateDevices();
        EXPECT_EQ(fakes.devices(), (Devices{a}));
    });
    find({a, b});
    EXPECT_EQ(fakes.devices(), (Devices{a, b, c}));
    EXPECT_EQ(added, (Devices{a, b, c}));
}

// ---- Devices that a plugin should not list, or lists twice.

TEST_F(PDeviceRegisterTest, adds_a_device_once_that_is_named_twice) {
    find({a, b, a});
    EXPECT_EQ(fakes.devices(), (Devices{a, b}));
    EXPECT_EQ(added, (Devices{a, b}));
    fakes.removeDevice(a);
    EXPECT_EQ(fakes.devices(), Devices{b});
}

TEST_F(PDeviceRegisterTest, passes_over_an_empty_entry) {
    find({nullptr, a, nullptr});
    EXPECT_EQ(fakes.devices(), Devices{a});
    EXPECT_EQ(added, Devices{a});
}

TEST_F(PDeviceRegisterTest, keeps_its_device_when_the_camera_was_opened_a_second_time) {
    find({a, b});
    added.clear();
    const QPointer<FakeDevice> second = new FakeDevice("A");
    find({second, b});
    EXPECT_EQ(fakes.devices(), (Devices{a, b}));
    EXPECT_TRUE(added.isEmpty());
    EXPECT_TRUE(removed.isEmpty());
    EXPECT_FALSE(a->isGone());
    runDeferredDeletes();
    EXPECT_TRUE(second.isNull());
}

TEST_F(PDeviceRegisterTest, destroys_a_second_device_once_that_is_named_twice) {
    find({a});
    const QPointer<FakeDevice> second = new FakeDevice("A");
    added.clear();
    find({second, second});
    EXPECT_EQ(fakes.devices(), Devices{a});
    EXPECT_TRUE(added.isEmpty());
    runDeferredDeletes();
    EXPECT_TRUE(second.isNull());
}

TEST_F(PDeviceRegisterTest,
       destroys_a_second_device_that_waits_to_be_deleted_when_it_is_destroyed) {
    const QPointer<FakeDevice> second = new FakeDevice("A");
    {
        FakeRegister brief({a});
        brief.updateDevices();
        brief.alive = {second};
        brief.updateDevices();
        EXPECT_EQ(brief.devices(), Devices{a});
    }
    EXPECT_TRUE(second.isNull());
}

TEST_F(PDeviceRegisterTest, keeps_its_devices_when_identical_cameras_were_opened_a_second_time) {
    const QPointer<FakeDevice> twin = new FakeDevice("A");
    find({a, twin});
    find({new FakeDevice("A"), new FakeDevice("A")});
    EXPECT_EQ(fakes.devices(), (Devices{a, twin}));
    EXPECT_TRUE(removed.isEmpty());
    runDeferredDeletes();
}

TEST_F(PDeviceRegisterTest, takes_the_new_device_of_a_camera_whose_old_one_is_silent) {
    find({a});
    a->modes.clear();
    auto* const second = new FakeDevice("A");
    find({second});
    EXPECT_EQ(fakes.devices(), Devices{second});
    EXPECT_EQ(removed, Devices{a});
}

// ---- Devices that are listed but do not answer any more.

TEST_F(PDeviceRegisterTest, removes_a_silent_device_and_looks_again_for_its_camera) {
    find({a, b});
    added.clear();
    a->modes.clear();
    auto* const again = new FakeDevice("A");
    bool oldWasThere = true;
    fakes.whenAsked = [&] {
        if (!fakes.devices().contains(a)) {
            oldWasThere = !a.isNull();
            fakes.alive = {again, b};
        }
    };
    fakes.updateDevices();
    EXPECT_EQ(fakes.devices(), Devices{b});
    EXPECT_EQ(removed, Devices{a});
    ASSERT_TRUE(waitUntil([&] { return !added.isEmpty(); }));
    EXPECT_FALSE(oldWasThere) << "its session must be closed before the camera is opened again";
    EXPECT_EQ(added, Devices{again});
    EXPECT_EQ(fakes.devices(), (Devices{b, again}));
    EXPECT_EQ(again->deviceId(false), "A-1");
}

TEST_F(PDeviceRegisterTest, keeps_a_device_that_never_named_a_mode) {
    a->modes.clear();
    find({a});
    find({a});
    EXPECT_EQ(fakes.devices(), Devices{a});
    EXPECT_TRUE(removed.isEmpty());
}

TEST_F(PDeviceRegisterTest, leaves_the_report_to_a_silent_device_that_streams) {
    find({a});
    ASSERT_TRUE(a->link().isOk());
    ASSERT_TRUE(a->startStream().isOk());
    a->modes.clear();
    find({a});
    EXPECT_EQ(fakes.devices(), Devices{a});
    a->stopStream();
    fakes.alive.clear();
    fakes.whenAsked = [this] { fakes.alive = fakes.devices(); };
    fakes.updateDevices();
    EXPECT_EQ(removed, Devices{a});
}

namespace {

struct ThrowRow {
    const char* name;
    std::function<void()> fail;
    const char* logged;
};

class FailingSearch : public RegisterFixture, public WithRow<ThrowRow> {};

ROW_TEST(FailingSearch, leaves_the_list_as_it_was_and_can_be_repeated) {
    const PLogCapture log;
    find({a, b});
    fakes.whenAsked = GetParam().fail;
    find({c});
    EXPECT_EQ(fakes.devices(), (Devices{a, b}));
    EXPECT_TRUE(removed.isEmpty());
    EXPECT_TRUE(log.contains(QString::fromLatin1(GetParam().logged), u"PCd"_qs));
    fakes.whenAsked = nullptr;
    find({a, c});
    EXPECT_EQ(fakes.devices(), (Devices{a, c}));
}

} // namespace

ROWS(Rows, FailingSearch,
     ThrowRow{"that_throws", [] { throw std::runtime_error("bus error"); },
              "Looking for devices failed: bus error"},
     ThrowRow{"that_throws_no_exception", [] { throw 42; }, // NOLINT: not an exception class
              "Looking for devices failed: unknown exception"});

// ---- Removing.

TEST_F(PDeviceRegisterTest, removes_a_device_whatever_it_throws_when_it_ends) {
    find({a, b});
    for (const QPointer<FakeDevice>& device : {a, b}) {
        device->link();
        device->startStream();
    }
    a->whenStopped = [] { throw std::runtime_error("bus error"); };
    b->whenUnlinked = [] { throw 42; }; // NOLINT: not an exception class
    PLogCapture log;
    find({});
    EXPECT_EQ(removed, (Devices{a, b}));
    EXPECT_TRUE(a->calls.contains(u"unlink"_qs));
    EXPECT_TRUE(log.contains(u"The end of a device failed: bus error"_qs));
    EXPECT_TRUE(log.contains(u"The end of a device failed: unknown exception"_qs));
    runDeferredDeletes();
    EXPECT_TRUE(a.isNull() && b.isNull());
}

TEST_F(PDeviceRegisterTest, unlinks_a_device_once_even_if_that_throws) {
    find({a});
    a->link();
    int times = 0;
    a->whenUnlinked = [&] {
        ++times;
        throw std::runtime_error("bus error");
    };
    EXPECT_THROW(a->unlink(), std::runtime_error);
    EXPECT_FALSE(a->isLinked());
    find({});
    EXPECT_EQ(times, 1);
}

TEST_F(PDeviceRegisterTest, stops_and_unlinks_a_device_before_it_emits_its_removal) {
    find({a});
    a->link();
    a->startStream();
    a->calls.clear();
    QStringList callsAtSignal;
    bool listedAtSignal = true;
    QObject::connect(&fakes, &PDeviceRegister::deviceRemoved, [&] {
        callsAtSignal = a->calls;
        listedAtSignal = fakes.devices().contains(a);
    });
    fakes.removeDevice(a);
    EXPECT_EQ(callsAtSignal, calls({"stop", "unlink"}));
    EXPECT_FALSE(listedAtSignal);
    EXPECT_EQ(removed, (Devices{a}));
}

TEST_F(PDeviceRegisterTest, emits_that_a_removed_device_is_unlinked_even_if_it_was_never_linked) {
    find({a});
    QByteArray unlinked;
    QObject::connect(a, &PDevice::unlinked, [&](const QByteArray& id) { unlinked = id; });
    fakes.removeDevice(a);
    EXPECT_EQ(unlinked, "A-1");
    EXPECT_EQ(a->calls, QStringList());
}

TEST_F(PDeviceRegisterTest, deletes_a_removed_device_later) {
    find({a});
    fakes.removeDevice(a);
    EXPECT_FALSE(a.isNull());
    runDeferredDeletes();
    EXPECT_TRUE(a.isNull());
}

TEST_F(PDeviceRegisterTest, removes_a_device_from_inside_a_signal_of_it) {
    find({a, b});
    bool aliveAfterwards = false;
    QObject::connect(a, &PDevice::modeChanged, [&] {
        fakes.removeDevice(a);
        aliveAfterwards = !a.isNull();
    });
    a->setMode({});
    EXPECT_TRUE(aliveAfterwards);
    EXPECT_EQ(fakes.devices(), (Devices{b}));
    EXPECT_TRUE(waitUntil([&] { return a.isNull(); }));
}

TEST_F(PDeviceRegisterTest, removes_a_device_once_when_a_listener_removes_it_again) {
    find({a, b});
    const auto again = [&] { fakes.removeDevice(a); };
    QObject::connect(a, &PDevice::unlinked, again);
    QObject::connect(&fakes, &PDeviceRegister::deviceRemoved, again);
    fakes.removeDevice(a);
    fakes.removeDevice(a);
    EXPECT_EQ(removed, (Devices{a}));
    EXPECT_EQ(fakes.devices(), (Devices{b}));
    EXPECT_TRUE(waitUntil([&] { return a.isNull(); }));
}

TEST_F(PDeviceRegisterTest, removes_another_device_from_inside_a_removal) {
    find({a, b, c});
    QObject::connect(&fakes, &PDeviceRegister::deviceRemoved, [&](PDevice* device) {
        if (device == a)
            fakes.removeDevice(b);
    });
    find({c});
    EXPECT_EQ(removed.size(), 2);
    EXPECT_EQ(fakes.devices(), (Devices{c}));
}

TEST_F(PDeviceRegisterTest, does_not_bring_back_what_a_listener_removed_during_an_update) {
    find({a, b});
    QObject::connect(&fakes, &PDeviceRegister::deviceRemoved, [&](PDevice* device) {
        if (device == a)
            fakes.removeDevice(b);
    });
    added.clear();
    find({b}); // b was present when the register scanned
    EXPECT_TRUE(fakes.devices().isEmpty());
    EXPECT_TRUE(added.isEmpty());
}

TEST_F(PDeviceRegisterTest, forgets_a_device_that_other_code_deletes) {
    find({a, b});
    delete a;
    EXPECT_EQ(fakes.devices(), Devices{b});
    find({b});
    EXPECT_EQ(fakes.devices(), Devices{b});
}

TEST_F(PDeviceRegisterTest, survives_a_listener_that_deletes_the_device_while_it_is_removed) {
    find({a, b});
    QObject::connect(a, &PDevice::unlinked, &fakes, [this] { a->deleteLater(); });
    QObject::connect(&fakes, &PDeviceRegister::deviceRemoved,
                     [](PDevice* device) { delete device; });
    find({b});
    EXPECT_TRUE(a.isNull());
    runDeferredDeletes();
    EXPECT_EQ(fakes.devices(), Devices{b});
}

TEST_F(PDeviceRegisterTest, leaves_a_device_alone_that_is_not_its_own) {
    find({a});
    fakes.removeDevice(b);
    fakes.removeDevice(nullptr);
    EXPECT_TRUE(removed.isEmpty());
    EXPECT_FALSE(b->isGone());
}

// ---- Finding.

TEST_F(PDeviceRegisterTest, finds_a_device_with_and_without_the_id_of_the_register) {
    find({a, b});
    EXPECT_EQ(fakes.findDevice("B-1"), b);
    EXPECT_EQ(fakes.findDevice("fakes/B-1"), b);
    EXPECT_EQ(fakes.findDevice("other/B-1"), nullptr);
    EXPECT_EQ(fakes.findDevice("B"), nullptr);
    EXPECT_EQ(fakes.findDevice(""), nullptr);
}

TEST_F(PDeviceRegisterTest, searches_again_only_for_a_device_it_does_not_know) {
    fakes.alive = {a, b};
    EXPECT_EQ(fakes.createDevice("A-1"), a);
    EXPECT_EQ(fakes.createDevice("fakes/B-1"), b);
    EXPECT_EQ(fakes.searches, 1);
    EXPECT_EQ(fakes.createDevice("C-1"), nullptr);
    EXPECT_EQ(fakes.searches, 2);
}

// ---- Destruction of the register.

TEST_F(PDeviceRegisterTest, stops_unlinks_and_deletes_its_devices_when_it_is_destroyed) {
    QStringList callsOfA;
    {
        FakeRegister brief({a, b});
        brief.updateDevices();
        a->link();
        a->startStream();
        QObject::connect(a, &PDevice::unlinked, [&] { callsOfA = a->calls; });
    }
    EXPECT_EQ(callsOfA, calls({"link", "start", "stop", "unlink"}));
    EXPECT_TRUE(a.isNull());
    EXPECT_TRUE(b.isNull());
}

TEST_F(PDeviceRegisterTest, destroys_devices_that_wait_to_be_deleted_when_it_is_destroyed) {
    {
        FakeRegister brief({a});
        brief.updateDevices();
        brief.removeDevice(a);
        EXPECT_FALSE(a.isNull());
    }
    EXPECT_TRUE(a.isNull()); // the code of a plugin's devices may be gone after this
}
