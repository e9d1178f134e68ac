// SPDX-License-Identifier: MIT
#pragma once

#include <PCdGui/TypedProperties.h>

#include <PCd/FakeDevice.h>

/// A fake device with the properties and groups of a real camera.
class CatalogueDevice : public FakeDevice {
public:
    CatalogueDevice();

private:
    QList<PDeviceProperty*> properties() const;
    QList<PDevicePropertyGroup*> groups() const;
};
