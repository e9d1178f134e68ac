// SPDX-License-Identifier: MIT
// The camera SDK's functions, as the plugin calls them: each looks up its namesake in libtoupcam at
// its first call and forwards to it. The plugin is not linked with that library, so a host without
// it still loads the plugin, and the log says why there are no cameras; the library may be anywhere
// and needs no shared-object name; and if an older library lacks a function, only that function
// fails. The library is the path in the environment variable TOUPCAM_LIBRARY, else libtoupcam.so
// where the system's loader finds it. While a call has not returned, PCallWatchdog can report it.

// Hidden, so that they never replace the library's own functions.
#define TOUPCAM_API(type) __attribute__((visibility("hidden"))) type
#include <toupcam/toupcam.h>

#include <PCdPlugins/PTDevice/PTLog.h>

#include <PCd/property/PReadWatch.h>

#include <PCore/call/PNamedCall.h>

#include <atomic>
#include <string_view>

#include <dlfcn.h>

// Static rather than in an unnamed namespace, which GCC and Clang spell differently in signatures,
// and these signatures are logged.

static void* openLibrary() {
    const QByteArray named = qgetenv("TOUPCAM_LIBRARY");
    const QByteArray path = named.isEmpty() ? QByteArray("libtoupcam.so") : named;
    void* const library = dlopen(path.constData(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        ptLog(Q_FUNC_INFO, __FILE__, __LINE__, PLogLevel::Error)
            << "No camera SDK, so no cameras:" << dlerror();
    }
    return library;
}

static void* findFunction(const char* name) {
    static void* const library = openLibrary();
    if (library == nullptr)
        return nullptr;
    void* const function = dlsym(library, name);
    if (function == nullptr) {
        ptLog(Q_FUNC_INFO, __FILE__, __LINE__, PLogLevel::Warning)
            << "The camera SDK lacks" << name;
    }
    return function;
}

/// Whether a function of this name reads from the camera.
static constexpr bool isReading(std::string_view name) {
    constexpr std::string_view prefix = "Toupcam_get_";
    return name.substr(0, prefix.size()) == prefix;
}

/// The result of a call that reads from the camera. Callers use what they were given even if it
/// failed, so this reports it to the host. A model that lacks the setting has not failed.
static HRESULT readResult(HRESULT result) {
    if (!checkError(result) && result != E_NOTIMPL)
        PReadWatch::reportFailure();
    return result;
}

template <bool isRead, typename Function, typename... Arguments>
static auto callSdk(Function function, Arguments... arguments) {
    if constexpr (isRead)
        return readResult(function(arguments...));
    else
        return function(arguments...);
}

#define PCD_UNPACK(...) __VA_ARGS__

// Arguments are listed twice, with and without their types: a template could forward to C
// functions, but not define functions with their names. The first call of a function, and of a
// thread, takes a way of its own, so that the others need few instructions.
#define FORWARD(result, failure, name, parameters, arguments)                                      \
    static constexpr PNamedCall<result parameters> name##Named(#name);                             \
    static std::atomic<decltype(&name)> name##Known{nullptr};                                      \
    [[gnu::cold, gnu::noinline]] static result name##First parameters {                            \
        const auto inProgress = name##Named.begin arguments;                                       \
        static const auto function = reinterpret_cast<decltype(&name)>(findFunction(#name));       \
        name##Known = function;                                                                    \
        if (function == nullptr)                                                                   \
            return failure;                                                                        \
        return callSdk<isReading(#name)>(function, PCD_UNPACK arguments);                          \
    }                                                                                              \
    result name parameters {                                                                       \
        PCallSlot* const slot = PCallSlot::ofThreadIfAny();                                        \
        const auto function = name##Known.load(std::memory_order_acquire);                         \
        if (Q_UNLIKELY(slot == nullptr || function == nullptr))                                    \
            return name##First arguments;                                                          \
        const auto inProgress = name##Named.beginIn(*slot) arguments;                              \
        return callSdk<isReading(#name)>(function, PCD_UNPACK arguments);                          \
    }

#include <toupcam/toupcam_functions.h>
