// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// True if the plugin must break this rule of `pcdctl check`: the one that the environment names,
/// or none.
inline bool breaks(const char* rule) {
    static const QByteArray name = qgetenv("PCD_MUTANT");
    return name == rule;
}
