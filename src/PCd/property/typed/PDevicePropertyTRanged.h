// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/typed/PDevicePropertyT.h>

/// A typed property with a range of the type R. The device's thread.
template <typename T, typename R>
class PDevicePropertyTRanged : public PDevicePropertyT<T> {
public:
    using PDevicePropertyT<T>::PDevicePropertyT;

    QVariant tryGetRange() override { return convertFromR(tryGetRangeFromDevice()); }

    // The order of the virtual functions is part of the binary interface.

    /// The device's range.
    virtual R tryGetRangeFromDevice() = 0;
    /// The range in a variant; an empty range if it cannot be converted.
    virtual R convertToR(QVariant range) const = 0;
    virtual QVariant convertFromR(R range) const = 0;
};
