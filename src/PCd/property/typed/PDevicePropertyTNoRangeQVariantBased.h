// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/typed/PDevicePropertyTNoRangeT.h>

/// A typed property without a range whose values go into variants as they are.
template <typename T>
class PDevicePropertyTNoRangeQVariantBased : public PDevicePropertyTNoRangeT<T> {
public:
    using PDevicePropertyTNoRangeT<T>::PDevicePropertyTNoRangeT;

    T convertToT(QVariant value) const override { return value.value<T>(); }
    QVariant convertFromT(T value) const override { return QVariant::fromValue(value); }
};
