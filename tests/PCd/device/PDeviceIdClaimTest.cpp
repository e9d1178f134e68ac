// SPDX-License-Identifier: MIT
#include <PCd/device/PDeviceIdClaim.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeRegister.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

struct IdRow {
    const char* name;
    QByteArray model;
    QByteArray serial;
    QByteArray id;
};

class DeviceId : public RowTest<IdRow> {};

ROW_TEST(DeviceId, is_made_of_model_and_serial) {
    const FakeDevice device(GetParam().model, GetParam().serial);
    EXPECT_EQ(device.deviceId(false), GetParam().id);
}

std::function<QByteArray()> wanting(const QByteArray& id) {
    return [id] { return id; };
}

} // namespace

ROWS(Rows, DeviceId, IdRow{"with_both", "Fake", "0042", "Fake-0042"},
     IdRow{"with_padding_zeros", "Fake", QByteArray("AB\0\0\0", 5), "Fake-AB"},
     IdRow{"with_nothing_but_padding", "Fake", QByteArray("\0\0", 2), "Fake"},
     IdRow{"without_a_serial", "Fake", "", "Fake"},
     IdRow{"with_a_blank_in_the_model", "Fake 5", "1", "Fake 5-1"});

TEST(PDeviceIdClaim, gives_the_second_and_third_device_of_the_same_name_a_suffix) {
    const FakeDevice first("Twin", "1"), second("Twin", "1"), third("Twin", "1");
    EXPECT_EQ(first.deviceId(false), "Twin-1");
    EXPECT_EQ(second.deviceId(false), "Twin-1#2");
    EXPECT_EQ(third.deviceId(false), "Twin-1#3");
}

TEST(PDeviceIdClaim, tells_devices_without_a_serial_apart) {
    const FakeDevice first("Nameless", ""), second("Nameless", "");
    EXPECT_EQ(first.deviceId(false), "Nameless");
    EXPECT_EQ(second.deviceId(false), "Nameless#2");
}

TEST(PDeviceIdClaim, stays_the_same_when_there_is_nothing_to_name_the_device_by) {
    const FakeDevice first("", ""), second("", "");
    const QByteArray id = first.deviceId(false);
    EXPECT_EQ(first.deviceId(false), id);
    const QByteArray other = second.deviceId(false);
    EXPECT_NE(other, id);
    EXPECT_EQ(second.deviceId(false), other);
    EXPECT_EQ(first.deviceId(false), id);
}

TEST(PDeviceIdClaim, gives_way_to_a_device_that_has_the_suffixed_name_by_itself) {
    const FakeDevice odd("Odd#2", ""), first("Odd", ""), second("Odd", "");
    EXPECT_EQ(odd.deviceId(false), "Odd#2");
    EXPECT_EQ(first.deviceId(false), "Odd");
    EXPECT_EQ(second.deviceId(false), "Odd#3");
}

TEST(PDeviceIdClaim, frees_the_id_when_the_device_is_destroyed) {
    {
        const FakeDevice device("Gone", "1");
        ASSERT_EQ(device.deviceId(false), "Gone-1");
    }
    const FakeDevice next("Gone", "1");
    EXPECT_EQ(next.deviceId(false), "Gone-1");
}

TEST(PDeviceIdClaim, frees_the_id_on_removal_while_the_removed_device_keeps_its_name) {
    auto* const device = new FakeDevice("Replug", "1"); // the register deletes it
    FakeRegister owner({device});
    owner.updateDevices();
    ASSERT_EQ(device->deviceId(false), "Replug-1");
    owner.removeDevice(device);
    const FakeDevice replugged("Replug", "1");
    EXPECT_EQ(replugged.deviceId(false), "Replug-1");
    EXPECT_EQ(device->deviceId(false), "Replug-1");
}

TEST(PDeviceIdClaim, that_was_released_leaves_the_id_to_its_new_holder) {
    PDeviceIdClaim second;
    {
        PDeviceIdClaim first;
        first.id(wanting("handed over"));
        first.release();
        EXPECT_EQ(second.id(wanting("handed over")), "handed over");
    } // destroying the old claim must not free the id again
    PDeviceIdClaim third;
    EXPECT_EQ(third.id(wanting("handed over")), "handed over#2");
}

TEST(PDeviceIdClaim, has_the_id_of_the_register_before_it) {
    auto* const device = new FakeDevice("Member", "1"); // the register deletes it
    FakeRegister owner({device});
    owner.updateDevices();
    EXPECT_EQ(device->deviceId(true), "fakes/Member-1");
    EXPECT_EQ(device->deviceId(false), "Member-1");
}

TEST(PDeviceIdClaim, gives_each_of_many_threads_an_id_of_its_own) {
    constexpr int count = 8;
    std::vector<PDeviceIdClaim> claims(count);
    std::vector<std::thread> threads;
    for (PDeviceIdClaim& claim : claims)
        threads.emplace_back([&claim] { claim.id(wanting("crowd")); });
    for (std::thread& thread : threads)
        thread.join();
    QStringList ids;
    for (PDeviceIdClaim& claim : claims)
        ids.append(QString::fromLatin1(claim.id(wanting(""))));
    EXPECT_EQ(ids.removeDuplicates(), 0);
    EXPECT_TRUE(ids.contains(u"crowd"_qs));
    EXPECT_TRUE(ids.contains(u"crowd#8"_qs));
}
