// SPDX-License-Identifier: MIT
#pragma once

#include <PLog/PLog.h>

/// A log record of the plugin. `function` is the caller's signature as the compiler spells it; it
/// is logged in the same spelling for all compilers. Any thread.
PMessageStream ptLog(const char* function, const char* file, int line,
                     PLogLevel level = PLogLevel::Info);

/// Logs a failed SDK call, with the source text of the call. Any thread.
void ptLogFailedCall(const char* function, const char* file, int line, const char* call);

/// True if an SDK result is a success: the SDK's success codes are the non-negative ones. Any
/// thread.
inline bool checkError(int result) {
    return result >= 0;
}

/// A record with the function and line of the caller.
#define PT_LOG() ptLog(Q_FUNC_INFO, __FILE__, __LINE__)

/// The same, logged through a helper function.
#define PT_LOG_IN(function) ptLog(function, __FILE__, __LINE__)

/// A record with a fixed source line: the number stays the same when the statement moves.
#define PT_LOG_AT(line) ptLog(Q_FUNC_INFO, __FILE__, line)

/// Makes an SDK call once and, if its result is an error, logs it as failed with the text of the
/// call, which the macros below take from the source.
#define PT_OP_AS(function, line, text, ...)                                                        \
    do {                                                                                           \
        if (!checkError(__VA_ARGS__))                                                              \
            ptLogFailedCall(function, __FILE__, line, text);                                       \
    } while (false)

/// An SDK call logged with a fixed function and source line.
#define PT_OP_IN(function, line, ...) PT_OP_AS(function, line, #__VA_ARGS__, __VA_ARGS__)

/// An SDK call logged with this function and line.
#define PT_OP(...) PT_OP_AS(Q_FUNC_INFO, __LINE__, #__VA_ARGS__, __VA_ARGS__)
