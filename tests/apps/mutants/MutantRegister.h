// SPDX-License-Identifier: MIT
#pragma once

#include <apps/mutants/Mutant.h>
#include <apps/mutants/MutantDevice.h>

#include <PCd/device/PDeviceRegister.h>

/// The register of examples/driver for MutantDevice.
class MutantRegister : public PDeviceRegister {
    Q_OBJECT
    Q_INTERFACES(PDeviceRegister)
    Q_PLUGIN_METADATA(IID "pellix.devices.mutant")

public:
    MutantRegister() {
        if (!breaks("enumeration.register-id"))
            setId("mutant");
    }

    ~MutantRegister() override { fault("~MutantRegister"); }

    QList<PDevice*> aliveDevices() override {
        fault("aliveDevices");
        if (!m_isPlugged)
            return {};
        if (devices().isEmpty() || breaks("enumeration.same-devices"))
            return {makeDevice()};
        if (breaks("enumeration.while-streaming"))
            static_cast<MutantDevice*>(devices().first())->pause();
        return breaks("enumeration.entries") ? devices() + QList<PDevice*>{nullptr} : devices();
    }

    PDevice* createDevice(const QByteArray& id) override {
        if (breaks("enumeration.finds-by-id"))
            return nullptr;
        if (breaks("enumeration.unknown-id"))
            return devices().value(0);
        return PDeviceRegister::createDevice(id);
    }

    /// Plugs the made-up cable in or out.
    Q_INVOKABLE void setPlugged(bool plugged) {
        const bool isStreaming = !devices().isEmpty() && devices().first()->isStreaming();
        if (!plugged && breaks("hot-plug.noticed"))
            return;
        if (!plugged && breaks("hot-plug.while-streaming") && isStreaming)
            return;
        if (!plugged && !devices().isEmpty())
            static_cast<MutantDevice*>(devices().first())->setUnplugged();
        m_wasUnplugged = m_wasUnplugged || !plugged;
        m_isPlugged = plugged && !breaks("hot-plug.returns");
        updateDevices();
    }

private:
    PDevice* makeDevice() {
        auto* const device = new MutantDevice(this);
        if (m_wasUnplugged)
            device->setReplugged();
        if (m_wasUnplugged && breaks("hot-plug.nothing-left"))
            MutantDevice::leakFile();
        return device;
    }

    bool m_isPlugged = true;
    bool m_wasUnplugged = false;
};
