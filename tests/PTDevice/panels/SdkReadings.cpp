// SPDX-License-Identifier: MIT
// Two functions of the SDK, defined by the program: they take precedence over the library's.
#include <PTDevice/panels/SdkReadings.h>

#include <toupcam/toupcam.h>

#include <dlfcn.h>

namespace {

const SdkReadings* living = nullptr;

template <typename Function>
Function* findNext(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

SdkReadings::SdkReadings(int temperature, int voltage, int highestVoltage)
    : m_temperature(short(temperature))
    , m_voltage(voltage)
    , m_highestVoltage(highestVoltage) {
    living = this;
}

SdkReadings::~SdkReadings() {
    living = nullptr;
}

const SdkReadings* SdkReadings::current() {
    return living;
}

const int* SdkReadings::option(unsigned number) const {
    if (number == TOUPCAM_OPTION_TEC_VOLTAGE)
        return &m_voltage;
    return number == TOUPCAM_OPTION_TEC_VOLTAGE_MAX ? &m_highestVoltage : nullptr;
}

HRESULT Toupcam_get_Option(HToupcam h, unsigned option, int* value) {
    static auto* const next = findNext<decltype(Toupcam_get_Option)>("Toupcam_get_Option");
    const int* const fixed = living != nullptr ? living->option(option) : nullptr;
    if (fixed == nullptr)
        return next(h, option, value);
    *value = *fixed;
    return S_OK;
}

HRESULT Toupcam_get_Temperature(HToupcam h, short* temperature) {
    static auto* const next =
        findNext<decltype(Toupcam_get_Temperature)>("Toupcam_get_Temperature");
    if (living == nullptr)
        return next(h, temperature);
    *temperature = living->temperature();
    return S_OK;
}
