// SPDX-License-Identifier: MIT
#include <PCdGui/editor/PCoalescingSetter.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>
#include <PCd/FakeRegister.h>

#include <QCoreApplication>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <memory>

namespace {

class PCoalescingSetterTest : public testing::Test {
protected:
    PCoalescingSetterTest() { property.updateValueFromDevice(); }

    qsizetype sets() const { return property.calls.count(u"set"_qs); }
    static void turn() { QCoreApplication::processEvents(); }

    FakeProperty property{"gain", 5};
    PCoalescingSetter sender{&property};
    QSignalSpy settled{&sender, &PCoalescingSetter::settled};
    QSignalSpy refused{&sender, &PCoalescingSetter::refused};
};

} // namespace

TEST_F(PCoalescingSetterTest, sets_the_last_value_of_a_turn) {
    for (int value = 10; value < 20; ++value)
        sender.post(value);
    EXPECT_TRUE(sender.isWaiting());
    EXPECT_EQ(sets(), 0);
    turn();
    EXPECT_EQ(sets(), 1);
    EXPECT_EQ(property.inDevice, 19);
    EXPECT_FALSE(sender.isWaiting());
    EXPECT_EQ(settled.size(), 1);
    EXPECT_EQ(refused.size(), 0);
}

TEST_F(PCoalescingSetterTest, says_once_that_a_value_was_refused) {
    property.refuses = true;
    sender.post(10);
    turn();
    EXPECT_EQ(refused.size(), 1);
    EXPECT_EQ(settled.size(), 1);
}

TEST_F(PCoalescingSetterTest, reports_a_refusal_although_the_reading_before_failed) {
    property.failsToRead = true;
    property.updateValueFromDevice();
    property.failsToRead = false;
    property.refuses = true;
    sender.post(10);
    turn();
    EXPECT_EQ(refused.size(), 1);
}

TEST_F(PCoalescingSetterTest, reports_no_refusal_of_what_cannot_be_read_back) {
    property.failsToRead = property.refuses = true;
    sender.post(10);
    turn();
    EXPECT_EQ(refused.size(), 0);
}

TEST_F(PCoalescingSetterTest,
       does_not_set_the_value_that_the_property_has_but_reports_it_as_settled) {
    sender.post(5);
    turn();
    EXPECT_EQ(sets(), 0);
    EXPECT_EQ(settled.size(), 1);
}

TEST_F(PCoalescingSetterTest, sets_at_once_when_flushed_and_not_again) {
    sender.post(7);
    sender.flush();
    EXPECT_EQ(sets(), 1);
    turn();
    EXPECT_EQ(sets(), 1);
}

TEST_F(PCoalescingSetterTest, sets_nothing_that_was_dropped) {
    sender.post(7);
    sender.drop();
    turn();
    EXPECT_EQ(sets(), 0);
    EXPECT_EQ(settled.size(), 0);
}

TEST_F(PCoalescingSetterTest, sends_what_is_posted_while_it_sets) {
    QObject::connect(&property, &PDeviceProperty::valueChanged, &sender, [this](const QVariant& v) {
        if (v == 7)
            sender.post(8);
    });
    sender.post(7);
    turn();
    turn();
    EXPECT_EQ(property.inDevice, 8);
    EXPECT_EQ(sets(), 2);
}

TEST(PCoalescingSetter, reports_no_refusal_if_the_device_no_longer_answers) {
    auto* const property = new FakeProperty("gain", 5); // the device's
    auto* const device = new FakeDevice;                // the register's
    device->makeProperties = [&] { return QList<PDeviceProperty*>{property}; };
    device->supportProperties();
    FakeRegister devices({device});
    devices.updateDevices();
    PCoalescingSetter sender(property);
    const QSignalSpy refused(&sender, &PCoalescingSetter::refused);
    property->refuses = true;
    sender.post(10);
    sender.flush();
    EXPECT_EQ(refused.size(), 1);
    device->modes.clear();
    sender.post(10);
    sender.flush();
    EXPECT_EQ(refused.size(), 1);
}

TEST(PCoalescingSetter, outlives_its_property) {
    auto property = std::make_unique<FakeProperty>("gain");
    PCoalescingSetter sender(property.get());
    sender.post(7);
    property.reset();
    QCoreApplication::processEvents();
    EXPECT_FALSE(sender.isWaiting());
}

TEST_F(PCoalescingSetterTest, sets_a_value_only_if_the_condition_allows_it) {
    bool isAllowed = false;
    QVariantList asked;
    sender.setCondition([&](const PDeviceProperty& one, const QVariant& value) {
        EXPECT_EQ(&one, &property);
        EXPECT_TRUE(sender.isWaiting()); // an editor shows the value meanwhile
        asked.append(value);
        return isAllowed;
    });
    sender.post(10);
    turn();
    EXPECT_EQ(sets(), 0);
    EXPECT_FALSE(sender.isWaiting());
    EXPECT_EQ(settled.size(), 1);
    isAllowed = true;
    sender.post(11);
    turn();
    EXPECT_EQ(property.inDevice, 11);
    EXPECT_EQ(asked, QVariantList({10, 11}));
    sender.post(11); // which it has
    turn();
    EXPECT_EQ(asked.size(), 2);
}

TEST_F(PCoalescingSetterTest, asks_once_for_what_is_posted_during_the_question) {
    int asked = 0;
    sender.setCondition([&](const PDeviceProperty&, const QVariant&) {
        ++asked;
        sender.post(12);
        turn();
        return true;
    });
    sender.post(10);
    turn();
    turn();
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(property.calls.count(u"set"_qs), 1);
    EXPECT_EQ(property.inDevice, 12);
}

TEST_F(PCoalescingSetterTest, cannot_ask_at_its_end_and_discards_the_value) {
    sender.setCondition([](const PDeviceProperty&, const QVariant&) {
        ADD_FAILURE() << "asked";
        return true;
    });
    sender.post(10);
    sender.flush();
    turn();
    EXPECT_EQ(sets(), 0);
    EXPECT_FALSE(sender.isWaiting());
}

TEST(PCoalescingSetter, may_be_deleted_during_the_question) {
    FakeProperty property("gain", 5);
    property.updateValueFromDevice();
    auto sender = std::make_unique<PCoalescingSetter>(&property);
    sender->setCondition([&](const PDeviceProperty&, const QVariant&) {
        sender.reset();
        return true;
    });
    sender->post(10);
    QCoreApplication::processEvents();
    EXPECT_EQ(property.calls.count(u"set"_qs), 0);
}
