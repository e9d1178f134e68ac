// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

#include <QString>

#include <optional>
#include <vector>

/// One SDK call of a session: the `number`-th call of its function, from 1. Calls of other
/// functions that come at times of their own do not change it.
struct SdkCall {
    std::string function;
    unsigned number = 1;
};

/// What is to happen at one call. A value type; any thread.
struct CallFault {
    /// A kind of fault: what the call returns, or what else happens just before or after it.
    struct Kind {
        const char* name;
        int answer;       ///< TOUPCAMSIM_…
        HRESULT result;   ///< with an answer other than TOUPCAMSIM_PASS
        int moment;       ///< of the action: TOUPCAMSIM_BEFORE_CALL or TOUPCAMSIM_AFTER_CALL
        void (*action)(); ///< null: none
        bool isHarmless;  ///< the session must succeed anyway
    };

    SdkCall call;
    const Kind* kind = nullptr;

    /// Every kind: those that each call is tried with (a failure, an absurd success, the camera
    /// unplugged), and the callbacks, of which each call gets one before and one after it.
    static const std::vector<Kind>& failures();
    static const std::vector<Kind>& callbacksBefore();
    static const std::vector<Kind>& callbacksAfter();

    /// False for calls without a result, which cannot fail.
    static bool canFail(const std::string& function);

    /// As a text, such as "Toupcam_get_Hue#3:unplugged", and back; nothing if it is none.
    QString text() const;
    static std::optional<CallFault> parse(const QString& text);
};

/// Faults of one session, usually one.
using CallFaults = std::vector<CallFault>;
