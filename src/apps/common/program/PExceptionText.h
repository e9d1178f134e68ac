// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <exception>

/// What an exception of the C++ library says to users. Any thread.
namespace PExceptionText {

/// Its text, but a sentence instead of "std::bad_alloc", and of the system's three words for a
/// thread that could not be started.
QString of(const std::exception& error);

} // namespace PExceptionText
