// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

/// Arguments of a command line as text. Any thread.
namespace PArgumentText {

/// Fails, naming the first of the arguments that is not UTF-8: two file names that are not could
/// become the same one.
PStatus check(int argc, const char* const* argv);

} // namespace PArgumentText
