// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/typed/PDevicePropertyT.h>

/// A typed property without a range: none is ever read from the device.
template <typename T>
class PDevicePropertyTNoRangeT : public PDevicePropertyT<T> {
public:
    using PDevicePropertyT<T>::PDevicePropertyT;

    QVariant tryGetRange() override { return QVariant(); }
};
