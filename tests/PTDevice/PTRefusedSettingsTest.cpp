// SPDX-License-Identifier: MIT
// Settings whose adapters return the same whether the camera took them or not: the host still has
// the value that the camera has.
#include <PTDevice/SimFixture.h>

#include <PCd/property/PDeviceProperty.h>

#include <support/QtPrinters.h>

#include <QRect>
#include <QSignalSpy>
#include <QUuid>

namespace {

QUuid item(uchar place) {
    return QUuid(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, place);
}

struct SettingRow {
    const char* name; ///< the property's id
    const char* put;
    QVariant value;
};

class RefusedSetting : public SimFixture, public WithRow<SettingRow> {
protected:
    RefusedSetting() {
        loadScene({SimCameraText()});
        device = open();
        device->supportProperties();
        property = device->getProperty(GetParam().name);
    }

    std::unique_ptr<PTDevice> device;
    PDeviceProperty* property = nullptr; // the device's
};

} // namespace

ROW_TEST(RefusedSetting, leaves_the_host_with_what_the_camera_has) {
    ASSERT_NE(property, nullptr);
    const QVariant before = property->valueInner();
    ASSERT_NE(before, GetParam().value);
    QSignalSpy changes(property, &PDeviceProperty::valueChanged);
    ToupcamSim_failCall(GetParam().put, 0, 1, E_FAIL);
    property->setValue(GetParam().value);
    EXPECT_EQ(property->valueInner(), before);
    ASSERT_EQ(changes.size(), 1);
    EXPECT_EQ(changes.first().first().value<QVariant>(), before);
}

ROW_TEST(RefusedSetting, is_the_hosts_once_the_camera_takes_it) {
    ASSERT_NE(property, nullptr);
    property->setValue(GetParam().value);
    EXPECT_EQ(property->valueInner(), GetParam().value);
}

ROWS(Rows, RefusedSetting, SettingRow{"autoexponeable", "Toupcam_put_AutoExpoEnable", false},
     SettingRow{"negative", "Toupcam_put_Negative", true},
     SettingRow{"chrome", "Toupcam_put_Chrome", true},
     SettingRow{"vflip", "Toupcam_put_VFlip", true}, SettingRow{"hflip", "Toupcam_put_HFlip", true},
     SettingRow{"tint", "Toupcam_put_TempTint", 777},
     SettingRow{"temp", "Toupcam_put_TempTint", 6000},
     SettingRow{"colormatrix", "Toupcam_put_Option", item(0)},
     SettingRow{"wbgain", "Toupcam_put_Option", item(0)},
     SettingRow{"binning", "Toupcam_put_Option", item(1)},
     SettingRow{"rotate", "Toupcam_put_Option", item(1)},
     SettingRow{"roi", "Toupcam_put_Roi", QRect(8, 8, 16, 16)});
