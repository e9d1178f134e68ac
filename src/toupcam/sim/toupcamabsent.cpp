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

/// A setter and a getter of one whole number.
#define ABSENT_NUMBER(name)                                                                        \
    ABSENT(Toupcam_put_##name, (HToupcam h, int value), h, value)                                  \
    ABSENT(Toupcam_get_##name, (HToupcam h, int* value), h, out(value))

ABSENT(Toupcam_Trigger, (HToupcam h, unsigned short nNumber), h, nNumber)
ABSENT(Toupcam_put_Roi, (HToupcam h, unsigned x, unsigned y, unsigned width, unsigned height), h, x,
       y, width, height)
ABSENT(Toupcam_get_Roi, (HToupcam h, unsigned* x, unsigned* y, unsigned* width, unsigned* height),
       h, out(x), out(y), out(width), out(height))
ABSENT(Toupcam_AwbOnePush, (HToupcam h, PITOUPCAM_TEMPTINT_CALLBACK callback, void* pointer), h,
       function(callback), context(pointer))
ABSENT(Toupcam_put_TempTint, (HToupcam h, int nTemp, int nTint), h, nTemp, nTint)
ABSENT(Toupcam_get_TempTint, (HToupcam h, int* nTemp, int* nTint), h, out(nTemp), out(nTint))
ABSENT(Toupcam_put_Temperature, (HToupcam h, short nTemperature), h, nTemperature)
ABSENT(Toupcam_get_Temperature, (HToupcam h, short* pTemperature), h, out(pTemperature))
ABSENT_NUMBER(Hue)
ABSENT_NUMBER(Saturation)
ABSENT_NUMBER(Brightness)
ABSENT_NUMBER(Contrast)
ABSENT_NUMBER(Gamma)
ABSENT_NUMBER(Chrome)
ABSENT_NUMBER(VFlip)
ABSENT_NUMBER(HFlip)
ABSENT_NUMBER(Negative)
ABSENT_NUMBER(HZ)
