// SPDX-License-Identifier: MIT

// Entry points of the SDK that these simulated cameras do not have: each answers E_NOTIMPL to a
// handle that is open and plugged in, and is journalled like every other call.

#include <toupcam/sim/PSimCall.h>

using namespace PSimArgument;

namespace {

template <typename... Arguments>
HRESULT absent(const char* function, HToupcam h, const Arguments&... arguments) {
    return PSimCall::onCamera(
        function, h, [](PSimSession&) { return E_NOTIMPL; }, arguments...);
}

} // namespace

#define ABSENT(name, parameters, ...)                                                              \
    HRESULT name parameters {                                                                      \
        return absent(__func__, __VA_ARGS__);                                                      \
    }

ABSENT(Toupcam_put_Temperature, (HToupcam h, short nTemperature), h, nTemperature)
ABSENT(Toupcam_get_Temperature, (HToupcam h, short* pTemperature), h, out(pTemperature))
