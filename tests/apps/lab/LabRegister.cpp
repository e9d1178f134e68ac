// SPDX-License-Identifier: MIT
#include <apps/lab/LabRegister.h>

#include <apps/lab/LabDevice.h>

QList<PDevice*> LabRegister::aliveDevices() {
    if (!m_isPlugged)
        return {};
    return devices().isEmpty() ? QList<PDevice*>{new LabDevice(this)} : devices();
}

void LabRegister::setPlugged(bool plugged) {
    m_isPlugged = plugged;
    updateDevices();
}

#include "moc_LabRegister.cpp"
