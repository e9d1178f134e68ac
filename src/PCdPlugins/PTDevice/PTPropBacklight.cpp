// SPDX-License-Identifier: MIT
#include "PTPropBacklight.h"

#include "PTDevice.h"
#include "PTPanel.h"
#include "ui_PTBacklight.h"

#include <initializer_list>

namespace {

enum Frequency { Hz60 = 0, Hz50 = 1, DirectCurrent = 2 };

void setExclusive(const Ui::PTBacklight& ui, bool exclusive) {
    for (QRadioButton* button : {ui.dc, ui.hz50, ui.hz60})
        button->setAutoExclusive(exclusive);
}

} // namespace

PTBacklightProperty::PTBacklightProperty(Toupcam_t* handle, const QByteArray& id,
                                         const QString& title)
    : PDevicePropertyInt(id, title, PCD::DevicePropertyType::Custom)
    , m_handle(handle) {
}

bool PTBacklightProperty::trySetValueToDevice(int value) {
    return checkError(Toupcam_put_HZ(m_handle, value));
}

int PTBacklightProperty::tryGetValueFromDevice() {
    int value = 0;
    Toupcam_get_HZ(m_handle, &value);
    return value;
}

PMinMaxRange<int> PTBacklightProperty::tryGetRangeFromDevice() {
    return {0, 0, 0};
}

QWidget* PTBacklightProperty::createWidget() {
    auto* const panel = new PTPanel;
    auto* const ui = new Ui::PTBacklight;
    ui->setupUi(panel);
    connect(
        panel, &QObject::destroyed, panel, [ui] { delete ui; }, Qt::DirectConnection);

    // The captions of the two frequencies are crossed on purpose: it is the code that counts, and
    // users know the button that stills their lamp.
    const auto show = [ui](int value) {
        // Exclusive buttons keep one of them checked, but a code that none of them stands for must
        // not show as one of theirs.
        setExclusive(*ui, false);
        ui->dc->setChecked(value == DirectCurrent);
        ui->hz50->setChecked(value == Hz50);
        ui->hz60->setChecked(value == Hz60);
        setExclusive(*ui, true);
    };
    show(convertToT(valueInner()));
    const auto setWhenOn = [this, panel](QRadioButton* button, int value) {
        const auto setIt = [this, value](bool on) {
            if (on)
                setValue(convertFromT(value));
        };
        connect(button, &QRadioButton::toggled, this, panel->whileAlive(setIt),
                Qt::DirectConnection);
    };
    setWhenOn(ui->dc, DirectCurrent);
    setWhenOn(ui->hz50, Hz50);
    setWhenOn(ui->hz60, Hz60);
    connect(this, qOverload<int>(&PDevicePropertyInt::valueChanged), this, panel->whileAlive(show),
            Qt::DirectConnection);
    panel->setRetranslation([ui, panel] { ui->retranslateUi(panel); });
    return panel;
}
