// SPDX-License-Identifier: MIT
#include <PCd/device/PDeviceManager.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeRegister.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QPointer>

#include <gtest/gtest.h>

// ---- Choosing a device.

namespace {

struct SelectRow {
    const char* name;
    const char* text;
    const char* id; ///< of the expected device; null for none
    const char* problem;
};

/// Cameras 0 to 4: Alpha-1, Alpha-1#2, Beta-7, Beta-8, 2000-5.
class Selecting : public RowTest<SelectRow> {
protected:
    Selecting() {
        auto* const one = new FakeRegister(
            {new FakeDevice("Alpha"), new FakeDevice("Alpha"), new FakeDevice("Beta", "7")});
        auto* const other =
            new FakeRegister({new FakeDevice("Beta", "8"), new FakeDevice("2000", "5")});
        manager.addRegister(one);
        manager.addRegister(other);
        for (const PDevice* device : manager.devices())
            device->deviceId(false); // in the order of their numbers
    }

    PDeviceManager manager;
};

ROW_TEST(Selecting, finds_the_device_or_says_why_not) {
    const auto selection = manager.select(QString::fromLatin1(GetParam().text));
    EXPECT_EQ(selection.problem, QString::fromLatin1(GetParam().problem));
    if (GetParam().id == nullptr) {
        EXPECT_EQ(selection.device, nullptr);
    } else {
        ASSERT_NE(selection.device, nullptr);
        EXPECT_EQ(selection.device->deviceId(false), GetParam().id);
    }
}

} // namespace

ROWS(Rows, Selecting, SelectRow{"no_text_means_the_first", "", "Alpha-1", ""},
     SelectRow{"a_number_is_the_place_in_the_list", "2", "Beta-7", ""},
     SelectRow{"numbers_go_on_over_all_registers", "3", "Beta-8", ""},
     SelectRow{"a_number_beyond_the_list_is_named", "5", nullptr,
               "no camera 5: the cameras are numbered 0 to 4"},
     SelectRow{"a_number_beyond_the_list_may_begin_an_id", "20", "2000-5", ""},
     SelectRow{"a_negative_number_is_not_a_place", "-1", nullptr,
               "no camera \"-1\": there are \"Alpha-1\", \"Alpha-1#2\", \"Beta-7\", "
               "\"Beta-8\", \"2000-5\""},
     SelectRow{"an_id_is_found", "Beta-7", "Beta-7", ""},
     SelectRow{"an_id_that_begins_another_is_found_itself", "Alpha-1", "Alpha-1", ""},
     SelectRow{"an_id_with_a_suffix_is_found", "Alpha-1#2", "Alpha-1#2", ""},
     SelectRow{"a_beginning_that_only_one_has_is_enough", "2000-", "2000-5", ""},
     SelectRow{"a_beginning_within_a_suffix_is_enough", "Alpha-1#", "Alpha-1#2", ""},
     SelectRow{"a_beginning_that_two_have_is_ambiguous", "Beta", nullptr,
               "\"Beta\" begins the ids of several cameras: \"Beta-7\", \"Beta-8\""},
     SelectRow{"a_beginning_of_identical_cameras_is_ambiguous", "Alpha", nullptr,
               "\"Alpha\" begins the ids of several cameras: \"Alpha-1\", \"Alpha-1#2\""},
     SelectRow{"capital_letters_matter", "beta-7", nullptr,
               "no camera \"beta-7\": there are \"Alpha-1\", \"Alpha-1#2\", \"Beta-7\", "
               "\"Beta-8\", \"2000-5\""},
     SelectRow{"a_middle_is_not_a_beginning", "eta-7", nullptr,
               "no camera \"eta-7\": there are \"Alpha-1\", \"Alpha-1#2\", \"Beta-7\", "
               "\"Beta-8\", \"2000-5\""});

TEST(PDeviceManager, says_that_there_is_no_camera_at_all) {
    const PDeviceManager manager;
    for (const char* text : {"", "0", "Alpha"}) {
        const auto selection = manager.select(QString::fromLatin1(text));
        EXPECT_EQ(selection.device, nullptr);
        EXPECT_EQ(selection.problem, u"no camera found"_qs);
    }
}

// ---- Its registers.

TEST(PDeviceManager, emits_the_devices_of_a_register_it_takes_over) {
    auto* const device = new FakeDevice;
    PDeviceManager manager;
    QList<PDevice*> added;
    QObject::connect(&manager, &PDeviceManager::deviceAdded,
                     [&](PDevice* found) { added.append(found); });
    manager.addRegister(new FakeRegister({device}));
    EXPECT_EQ(added, QList<PDevice*>{device});
    EXPECT_EQ(manager.devices(), QList<PDevice*>{device});
}

TEST(PDeviceManager, has_every_register_look_for_its_devices) {
    auto* const one = new FakeRegister;
    auto* const other = new FakeRegister;
    PDeviceManager manager;
    manager.addRegister(one);
    manager.addRegister(other);
    auto* const device = new FakeDevice;
    other->alive = {device};
    manager.updateDevices();
    EXPECT_EQ(one->searches, 2);
    EXPECT_EQ(other->searches, 2);
    EXPECT_EQ(manager.devices(), QList<PDevice*>{device});
}

TEST(PDeviceManager, removes_the_devices_and_deletes_the_registers_when_it_ends) {
    QPointer<FakeDevice> device = new FakeDevice;
    QPointer<FakeRegister> fakes = new FakeRegister({device});
    int removed = 0;
    {
        PDeviceManager manager;
        manager.addRegister(fakes);
        device->link();
        QObject::connect(&manager, &PDeviceManager::deviceRemoved, [&] {
            ++removed;
            EXPECT_TRUE(device->isGone());
        });
    }
    EXPECT_EQ(removed, 1);
    EXPECT_TRUE(fakes.isNull());
    EXPECT_TRUE(device.isNull());
}
