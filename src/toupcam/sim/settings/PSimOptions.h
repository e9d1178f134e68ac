// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/scene/PSimScene.h>
#include <toupcam/toupcam.h>

#include <map>

/// The options of Toupcam_put_Option that are plain values, with checks: E_NOTIMPL for one that
/// this model does not have, E_INVALIDARG out of range. Any thread may use it under its owner's
/// lock.
class PSimOptions {
public:
    /// In the binning option: pixels are averaged rather than summed.
    static constexpr int averageBit = 0x80;

    /// Power-on values.
    explicit PSimOptions(const PSimCameraSpec& spec);

    /// Sets an option; an error changes nothing.
    HRESULT set(unsigned option, int value);
    /// E_POINTER for a null output.
    HRESULT get(unsigned option, int* value) const;
    /// The applied value, or `otherwise` if this model does not have the option.
    int value(unsigned option, int otherwise) const;

private:
    HRESULT check(unsigned option, int value) const;

    std::uint64_t m_flags;
    int m_fanLevels;
    std::map<unsigned, int> m_values;
};
