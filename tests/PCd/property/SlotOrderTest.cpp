// SPDX-License-Identifier: MIT
// The order of virtual functions, on which separately built plugins rely.
#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceRegister.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PDevicePropertyGroup.h>
#include <PCd/property/typed/PDevicePropertyAction.h>
#include <PCd/property/typed/PDevicePropertyBool.h>
#include <PCd/property/typed/PDevicePropertyEnum.h>
#include <PCd/property/typed/PDevicePropertyInt.h>
#include <PCd/property/typed/PDevicePropertyScanArea.h>

#include <PCore/PThread.h>

#include <support/RowName.h>
#include <support/SlotIndex.h>

#include <gtest/gtest.h>

#include <ostream>

namespace {

struct SlotRow {
    const char* name;
    std::optional<std::size_t> slot;
    std::size_t expected;
};

void PrintTo(const SlotRow& row, std::ostream* out) {
    *out << row.name << " in slot " << row.expected;
}

class SlotOrder : public testing::TestWithParam<SlotRow> {};

TEST_P(SlotOrder, has_the_function_in_its_slot) {
    ASSERT_TRUE(GetParam().slot.has_value()) << GetParam().name << " is not virtual";
    EXPECT_EQ(*GetParam().slot, GetParam().expected);
}

// metaObject, qt_metacast, qt_metacall, two destructors, event, eventFilter, timerEvent,
// childEvent, customEvent, connectNotify, disconnectNotify.
constexpr std::size_t afterQObject = 12;

} // namespace

INSTANTIATE_TEST_SUITE_P(
    QObject, SlotOrder,
    testing::Values(SlotRow{"metaObject", slotIndex(&PDevice::metaObject), 0},
                    SlotRow{"qt_metacast", slotIndex(&PDevice::qt_metacast), 1},
                    SlotRow{"qt_metacall", slotIndex(&PDevice::qt_metacall), 2},
                    SlotRow{"event", slotIndex(&PDevice::event), 5},
                    SlotRow{"eventFilter", slotIndex(&PDevice::eventFilter), 6}),
    RowName());

#define ROW(index, function)                                                                       \
    SlotRow {                                                                                      \
#function, slotIndex(&Class::function), afterQObject + index                               \
    }

namespace device {
using Class = PDevice;
INSTANTIATE_TEST_SUITE_P(
    PDevice, SlotOrder,
    testing::Values(ROW(0, model), ROW(1, serial), ROW(2, readStreamThis), ROW(3, writeStreamThis),
                    ROW(4, isSupportSoftwareTrigger), ROW(5, isGigE), ROW(6, isLinked),
                    ROW(7, isInitialized), ROW(8, isStreaming), ROW(9, isRealDevice),
                    ROW(10, createPropertiesWidget), ROW(11, isSequence), ROW(12, isPhotoDevice),
                    ROW(13, isSupportStillCapture), ROW(14, canProcessImage),
                    ROW(15, isEqualSessionInfo), ROW(16, getSnapshot), ROW(17, enableHistogram),
                    ROW(18, triggerStillCapture), ROW(19, getModel), ROW(20, getSerial),
                    ROW(21, tryLink), ROW(22, tryUnlink), ROW(23, tryStartStream),
                    ROW(24, tryStopStream), ROW(25, getCurrentMode), ROW(26, trySetMode),
                    ROW(27, getSupportModes), ROW(28, getSupportProperties),
                    ROW(29, getSupportPropertyGroups), ROW(30, tryFireSoftwareTrigger),
                    ROW(31, tryPollForTriggerReady)),
    RowName());
} // namespace device

namespace deviceRegister {
using Class = PDeviceRegister;
INSTANTIATE_TEST_SUITE_P(PDeviceRegister, SlotOrder,
                         testing::Values(ROW(0, registerInitialize), ROW(1, registerCleanup),
                                         ROW(2, createDevice), ROW(3, destroyDevice),
                                         ROW(4, aliveDevices)),
                         RowName());
} // namespace deviceRegister

namespace property {
using Class = PDeviceProperty;
INSTANTIATE_TEST_SUITE_P(PDeviceProperty, SlotOrder,
                         testing::Values(ROW(0, createWidget), ROW(1, readStreamThis),
                                         ROW(2, writeStreamThis), ROW(3, trySetValue),
                                         ROW(4, tryGetValue), ROW(5, tryGetRange),
                                         ROW(6, writeValueToStream), ROW(7, readValueFromStream)),
                         RowName());
} // namespace property

namespace action {
using Class = PDevicePropertyAction;
INSTANTIATE_TEST_SUITE_P(PDevicePropertyAction, SlotOrder,
                         testing::Values(ROW(3, trySetValue), ROW(4, tryGetValue),
                                         ROW(5, tryGetRange), ROW(6, writeValueToStream),
                                         ROW(7, readValueFromStream), ROW(8, trySetValueToDevice)),
                         RowName());
} // namespace action

namespace typed {
using Class = PDevicePropertyT<int>;
INSTANTIATE_TEST_SUITE_P(PDevicePropertyT, SlotOrder,
                         testing::Values(ROW(3, trySetValue), ROW(4, tryGetValue),
                                         ROW(8, trySetValueToDevice), ROW(9, tryGetValueFromDevice),
                                         ROW(10, convertToT), ROW(11, convertFromT)),
                         RowName());
} // namespace typed

namespace unranged {
using Class = PDevicePropertyBool;
INSTANTIATE_TEST_SUITE_P(PDevicePropertyBool, SlotOrder,
                         testing::Values(ROW(5, tryGetRange), ROW(10, convertToT),
                                         ROW(11, convertFromT)),
                         RowName());
} // namespace unranged

namespace ranged {
using Class = PDevicePropertyEnum;
INSTANTIATE_TEST_SUITE_P(PDevicePropertyEnum, SlotOrder,
                         testing::Values(ROW(5, tryGetRange), ROW(8, trySetValueToDevice),
                                         ROW(9, tryGetValueFromDevice), ROW(10, convertToT),
                                         ROW(11, convertFromT), ROW(12, tryGetRangeFromDevice),
                                         ROW(13, convertToR), ROW(14, convertFromR)),
                         RowName());
} // namespace ranged

namespace number {
using Class = PDevicePropertyInt;
INSTANTIATE_TEST_SUITE_P(PDevicePropertyInt, SlotOrder,
                         testing::Values(ROW(5, tryGetRange), ROW(8, trySetValueToDevice),
                                         ROW(9, tryGetValueFromDevice), ROW(10, convertToT),
                                         ROW(11, convertFromT), ROW(12, tryGetRangeFromDevice),
                                         ROW(13, convertToR), ROW(14, convertFromR)),
                         RowName());
} // namespace number

namespace region {
using Class = PDevicePropertyScanArea;
INSTANTIATE_TEST_SUITE_P(PDevicePropertyScanArea, SlotOrder,
                         testing::Values(ROW(6, writeValueToStream), ROW(7, readValueFromStream),
                                         ROW(12, tryGetRangeFromDevice)),
                         RowName());
} // namespace region

namespace thread {
using Class = PThread;
// run() is QThread's own; it is the one slot after those of QObject.
INSTANTIATE_TEST_SUITE_P(PThread, SlotOrder,
                         testing::Values(ROW(0, run), ROW(1, onStart), ROW(2, onStop), ROW(3, id)),
                         RowName());
} // namespace thread

#undef ROW

TEST(SlotIndex, is_empty_for_functions_that_are_not_virtual) {
    EXPECT_FALSE(slotIndex(&PDevice::deviceId).has_value());
    EXPECT_FALSE(slotIndex(&PDevicePropertyGroup::addProperty).has_value());
    EXPECT_FALSE(slotIndex(&PThread::isThreadRunned).has_value());
}
