// SPDX-License-Identifier: MIT
#include <PCd/plugins/ForeignPlugin.h>

namespace {

/// Leaves a trace when the library is loaded, which a test looks for.
struct LoadTrace {
    LoadTrace() { qputenv("PCD_TEST_FOREIGN_PLUGIN", "loaded"); }
} const loadTrace;

} // namespace
