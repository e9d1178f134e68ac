// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

namespace PDIP {

/// Base class of the image library's exceptions.
class exception : public std::exception {};

/// A failed image operation; what() is the reason.
class dip_exception : public exception {
public:
    explicit dip_exception(const char* message)
        // Makes a member, which nobody throws. NOLINTNEXTLINE(bugprone-throw-keyword-missing)
        : m_message(message) {}
    const char* what() const noexcept override { return m_message.what(); }

private:
    std::runtime_error m_message; // copying it never throws, as required of exceptions
};

} // namespace PDIP
