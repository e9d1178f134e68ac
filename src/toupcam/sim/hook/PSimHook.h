// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

#include <optional>

/// The function that a test may set to be called around every SDK call and before every callback of
/// the client. Without one, each of these costs one atomic load. Any thread.
namespace PSimHook {

/// The moments of toupcamsim.h.
enum Moment { BeforeCall, AfterCall, BeforeCallback };
/// Its answers.
enum Answer { Pass, Fail, Absurd };

/// See ToupcamSim_setHook().
using Function = int (*)(const char* name, int moment, HRESULT* result);

/// From now on this function is called; null: none.
void set(Function function);

/// An answer other than Pass, and the number that goes with it.
struct Fault {
    Answer answer;
    HRESULT result;
};

/// An SDK call begins. Nothing: it does its work.
std::optional<Fault> beforeCall(const char* name);
/// An SDK call is about to return.
void afterCall(const char* name);
/// A callback of the client is about to be called.
void beforeCallback(const char* name);

} // namespace PSimHook
