// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/typed/PDevicePropertyTRanged.h>

#include <PCore/PMinMaxRange.h>

/// A typed property whose range has a minimum, a maximum and a step of the type U.
template <typename T, typename U>
class PDevicePropertyMinMax : public PDevicePropertyTRanged<T, PMinMaxRange<U>> {
public:
    using PDevicePropertyTRanged<T, PMinMaxRange<U>>::PDevicePropertyTRanged;
};
