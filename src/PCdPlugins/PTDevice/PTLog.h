// SPDX-License-Identifier: MIT
#pragma once

#include <PLog/PLog.h>

/// A log record of the plugin. `function` is the caller's signature as the compiler spells it; it
/// is logged in one spelling whichever compiler that is. Any thread.
PMessageStream ptLog(const char* function, const char* file, int line,
                     PLogLevel level = PLogLevel::Info);

/// A record of an SDK call that failed, with the call as it is written. Any thread.
void ptLogFailedCall(const char* function, const char* file, int line, const char* call);

/// True if an SDK result is a success: the SDK's success codes are the non-negative ones. Any
/// thread.
inline bool checkError(int result) {
    return result >= 0;
}

/// A record from here.
#define PT_LOG() ptLog(Q_FUNC_INFO, __FILE__, __LINE__)

/// A record from here, by way of a helper of this function.
#define PT_LOG_IN(function) ptLog(function, __FILE__, __LINE__)

/// A record that is known by a source line of its own: the number stays when the statement moves.
#define PT_LOG_AT(line) ptLog(Q_FUNC_INFO, __FILE__, line)

/// Makes an SDK call once and, if its result is an error, logs it as failed with this text of the
/// call, which the macros below take as it is written.
#define PT_OP_AS(function, line, text, ...)                                                        \
    do {                                                                                           \
        if (!checkError(__VA_ARGS__))                                                              \
            ptLogFailedCall(function, __FILE__, line, text);                                       \
    } while (false)

/// An SDK call from the function and source line by which its record is known.
#define PT_OP_IN(function, line, ...) PT_OP_AS(function, line, #__VA_ARGS__, __VA_ARGS__)

/// An SDK call from here.
#define PT_OP(...) PT_OP_AS(Q_FUNC_INFO, __LINE__, #__VA_ARGS__, __VA_ARGS__)
