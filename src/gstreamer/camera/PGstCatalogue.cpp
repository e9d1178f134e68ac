// SPDX-License-Identifier: MIT
#include <gstreamer/camera/PGstCatalogue.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyCheck.h>
#include <PCd/property/value/PPropertyText.h>

PGstCatalogue PGstCatalogue::of(PDevice& device) {
    PGstCatalogue catalogue;
    for (const PDeviceProperty* property : device.supportProperties())
        catalogue.entries.append(describe(*property));
    return catalogue;
}

PGstCatalogue::Entry PGstCatalogue::describe(const PDeviceProperty& property) {
    return {property.id(),
            property.title(),
            PPropertyText::ofValue(property.reportedValue(), property.rangeInner()),
            PPropertyCheck::expectation(property),
            property.unit() == ValueUnits::Microsecond ? u"µs"_qs : QString(),
            property.description()};
}
