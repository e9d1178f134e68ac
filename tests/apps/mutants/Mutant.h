// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include <chrono>
#include <stdexcept>
#include <thread>

/// True if the plugin must break this rule of `pcdctl check`: the one that the environment names,
/// or none.
inline bool breaks(const char* rule) {
    static const QByteArray name = qgetenv("PCD_MUTANT");
    return name == rule;
}

/// Does not return normally from the function that the environment names with what happens there:
/// "hang tryStopStream", "throw tryStopStream", or "throw-number tryStopStream".
inline void fault(const char* function) {
    static const QList<QByteArray> words = qgetenv("PCD_MUTANT_FAULT").split(' ');
    if (words.value(1) != function)
        return;
    while (words[0] == "hang")
        std::this_thread::sleep_for(std::chrono::hours(1));
    if (words[0] == "throw")
        throw std::runtime_error("the driver is broken");
    throw 1;
}
