// SPDX-License-Identifier: MIT
// The typed signals that a property emits after an untyped one.
#include <PCd/property/typed/TypedFakes.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <type_traits>

namespace {

/// A kind of property with a value and a range, and others that are different from those.
template <typename Fake, typename T, typename R>
struct PropertyKind {
    using Property = Fake;
    using Value = T;
    using Range = R;
    T stored, other;
    R storedRange, otherRange;
};

using SwitchKind = PropertyKind<FakeSwitch, bool, void*>;
using NumberKind = PropertyKind<FakeNumber, int, PMinMaxRange<int>>;
using ChoiceKind = PropertyKind<FakeChoice, QUuid, PEnumeration>;

template <typename K>
K kind();

template <>
SwitchKind kind() {
    return {true, false, nullptr, nullptr};
}

template <>
NumberKind kind() {
    return {7, 99, {0, 10, 1}, {0, 200, 1}};
}

template <>
ChoiceKind kind() {
    return {offAndOn().items().at(1).id, QUuid(), offAndOn(), PEnumeration()};
}

/// The argument of one typed signal, and the thread that received it.
template <typename T>
struct Received {
    QList<T> values;
    std::thread::id thread;

    template <typename Property, typename Signal>
    void follow(Property& property, Signal signal) {
        QObject::connect(
            &property, signal, &property,
            [this](const T& value) {
                values.append(value);
                thread = std::this_thread::get_id();
            },
            Qt::DirectConnection);
    }
};

template <typename K>
class TypedSignal : public testing::Test {
protected:
    using Value = typename K::Value;

    TypedSignal() {
        property.inDevice = of.stored;
        property.updateValueFromDevice();
        received.follow(property, qOverload<Value>(&K::Property::valueChanged));
    }

    K of = kind<K>();
    typename K::Property property;
    Received<Value> received;
};

template <typename K>
class TypedRangeSignal : public TypedSignal<K> {
protected:
    using Range = typename K::Range;

    TypedRangeSignal() {
        ranges.follow(this->property, qOverload<Range>(&K::Property::rangeChanged));
    }

    Received<Range> ranges;
};

struct KindName {
    template <typename K>
    static std::string GetName(int) {
        if (std::is_same_v<K, SwitchKind>)
            return "of_a_switch";
        return std::is_same_v<K, NumberKind> ? "of_a_number" : "of_a_choice";
    }
};

using Valued = testing::Types<SwitchKind, NumberKind, ChoiceKind>;
using Ranged = testing::Types<NumberKind, ChoiceKind>;

} // namespace

TYPED_TEST_SUITE(TypedSignal, Valued, KindName);
TYPED_TEST_SUITE(TypedRangeSignal, Ranged, KindName);

TYPED_TEST(TypedSignal, carries_the_stored_value_whatever_the_untyped_one_carries) {
    emit this->property.PDeviceProperty::valueChanged(QVariant::fromValue(this->of.other));
    EXPECT_EQ(this->received.values, QList<typename TypeParam::Value>{this->of.stored});
}

TYPED_TEST(TypedSignal, is_emitted_at_once_on_the_propertys_thread) {
    emit this->property.PDeviceProperty::valueChanged(QVariant());
    EXPECT_EQ(this->received.values.size(), 1);
    EXPECT_EQ(this->received.thread, std::this_thread::get_id());
}

TYPED_TEST(TypedSignal, waits_for_the_propertys_thread_when_emitted_on_another) {
    std::thread([this] { emit this->property.PDeviceProperty::valueChanged(QVariant()); }).join();
    EXPECT_TRUE(this->received.values.isEmpty());
    ASSERT_TRUE(waitUntil([this] { return !this->received.values.isEmpty(); }));
    EXPECT_EQ(this->received.values.size(), 1);
    EXPECT_EQ(this->received.thread, std::this_thread::get_id());
}

TYPED_TEST(TypedRangeSignal, carries_the_stored_range_whatever_the_untyped_one_carries) {
    emit this->property.PDeviceProperty::rangeChanged(QVariant::fromValue(this->of.otherRange));
    EXPECT_EQ(this->ranges.values, QList<typename TypeParam::Range>{this->of.storedRange});
}

TYPED_TEST(TypedRangeSignal, waits_for_the_propertys_thread_when_emitted_on_another) {
    std::thread([this] { emit this->property.PDeviceProperty::rangeChanged(QVariant()); }).join();
    EXPECT_TRUE(this->ranges.values.isEmpty());
    ASSERT_TRUE(waitUntil([this] { return !this->ranges.values.isEmpty(); }));
    EXPECT_EQ(this->ranges.values.size(), 1);
    EXPECT_EQ(this->ranges.thread, std::this_thread::get_id());
}
