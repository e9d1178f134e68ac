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

#include <support/RowTest.h>
#include <support/SlotIndex.h>

#include <gtest/gtest.h>

namespace {

struct SlotRow {
    const char* name;
    std::optional<std::size_t> slot;
    std::size_t expected;
};

class SlotOrder : public RowTest<SlotRow> {};

ROW_TEST(SlotOrder, has_the_function_in_its_slot) {
    ASSERT_TRUE(GetParam().slot.has_value()) << GetParam().name << " is not virtual";
    EXPECT_EQ(*GetParam().slot, GetParam().expected);
}

// metaObject, qt_metacast, qt_metacall, two destructors, event, eventFilter, timerEvent,
// childEvent, customEvent, connectNotify, disconnectNotify.
constexpr std::size_t afterQObject = 12;

} // namespace

ROWS(QObject, SlotOrder, SlotRow{"metaObject", slotIndex(&PDevice::metaObject), 0},
     SlotRow{"qt_metacast", slotIndex(&PDevice::qt_metacast), 1},
     SlotRow{"qt_metacall", slotIndex(&PDevice::qt_metacall), 2},
     SlotRow{"event", slotIndex(&PDevice::event), 5},
     SlotRow{"eventFilter", slotIndex(&PDevice::eventFilter), 6});

#define ROW(index, function)                                                                       \
    SlotRow {                                                                                      \
#function, slotIndex(&Class::function), afterQObject + index                               \
    }

namespace device {
using Class = PDevice;
ROWS(PDevice, SlotOrder, ROW(0, model), ROW(1, serial), ROW(2, readStreamThis),
     ROW(3, writeStreamThis), ROW(4, isSupportSoftwareTrigger), ROW(5, isGigE), ROW(6, isLinked),
     ROW(7, isInitialized), ROW(8, isStreaming), ROW(9, isRealDevice),
     ROW(10, createPropertiesWidget), ROW(11, isSequence), ROW(12, isPhotoDevice),
     ROW(13, isSupportStillCapture), ROW(14, canProcessImage), ROW(15, isEqualSessionInfo),
     ROW(16, getSnapshot), ROW(17, enableHistogram), ROW(18, triggerStillCapture),
     ROW(19, getModel), ROW(20, getSerial), ROW(21, tryLink), ROW(22, tryUnlink),
     ROW(23, tryStartStream), ROW(24, tryStopStream), ROW(25, getCurrentMode), ROW(26, trySetMode),
     ROW(27, getSupportModes), ROW(28, getSupportProperties), ROW(29, getSupportPropertyGroups),
     ROW(30, tryFireSoftwareTrigger), ROW(31, tryPollForTriggerReady));
} // namespace device

namespace deviceRegister {
using Class = PDeviceRegister;
ROWS(PDeviceRegister, SlotOrder, ROW(0, registerInitialize), ROW(1, registerCleanup),
     ROW(2, createDevice), ROW(3, destroyDevice), ROW(4, aliveDevices));
} // namespace deviceRegister

namespace property {
using Class = PDeviceProperty;
ROWS(PDeviceProperty, SlotOrder, ROW(0, createWidget), ROW(1, readStreamThis),
     ROW(2, writeStreamThis), ROW(3, trySetValue), ROW(4, tryGetValue), ROW(5, tryGetRange),
     ROW(6, writeValueToStream), ROW(7, readValueFromStream));
} // namespace property

namespace action {
using Class = PDevicePropertyAction;
ROWS(PDevicePropertyAction, SlotOrder, ROW(3, trySetValue), ROW(4, tryGetValue),
     ROW(5, tryGetRange), ROW(6, writeValueToStream), ROW(7, readValueFromStream),
     ROW(8, trySetValueToDevice));
} // namespace action

namespace typed {
using Class = PDevicePropertyT<int>;
ROWS(PDevicePropertyT, SlotOrder, ROW(3, trySetValue), ROW(4, tryGetValue),
     ROW(8, trySetValueToDevice), ROW(9, tryGetValueFromDevice), ROW(10, convertToT),
     ROW(11, convertFromT));
} // namespace typed

namespace unranged {
using Class = PDevicePropertyBool;
ROWS(PDevicePropertyBool, SlotOrder, ROW(5, tryGetRange), ROW(10, convertToT),
     ROW(11, convertFromT));
} // namespace unranged

namespace ranged {
using Class = PDevicePropertyEnum;
ROWS(PDevicePropertyEnum, SlotOrder, ROW(5, tryGetRange), ROW(8, trySetValueToDevice),
     ROW(9, tryGetValueFromDevice), ROW(10, convertToT), ROW(11, convertFromT),
     ROW(12, tryGetRangeFromDevice), ROW(13, convertToR), ROW(14, convertFromR));
} // namespace ranged

namespace number {
using Class = PDevicePropertyInt;
ROWS(PDevicePropertyInt, SlotOrder, ROW(5, tryGetRange), ROW(8, trySetValueToDevice),
     ROW(9, tryGetValueFromDevice), ROW(10, convertToT), ROW(11, convertFromT),
     ROW(12, tryGetRangeFromDevice), ROW(13, convertToR), ROW(14, convertFromR));
} // namespace number

namespace region {
using Class = PDevicePropertyScanArea;
ROWS(PDevicePropertyScanArea, SlotOrder, ROW(6, writeValueToStream), ROW(7, readValueFromStream),
     ROW(12, tryGetRangeFromDevice));
} // namespace region

namespace thread {
using Class = PThread;
// run() is QThread's own; it is the one slot after those of QObject.
ROWS(PThread, SlotOrder, ROW(0, run), ROW(1, onStart), ROW(2, onStop), ROW(3, id));
} // namespace thread

#undef ROW

TEST(SlotIndex, is_empty_for_functions_that_are_not_virtual) {
    EXPECT_FALSE(slotIndex(&PDevice::deviceId).has_value());
    EXPECT_FALSE(slotIndex(&PDevicePropertyGroup::addProperty).has_value());
    EXPECT_FALSE(slotIndex(&PThread::isThreadRunned).has_value());
}
