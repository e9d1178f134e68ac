// SPDX-License-Identifier: MIT
#include <PCd/plugins/ForeignPlugin.h>

namespace {

/// Sets an environment variable when the library is loaded, which a test checks.
struct LoadTrace {
    LoadTrace() { qputenv("PCD_TEST_FOREIGN_PLUGIN", "loaded"); }
} const loadTrace;

} // namespace

#include "moc_ForeignPlugin.cpp"
