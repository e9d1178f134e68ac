// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

namespace PDIP {

/// Base of what the image library throws.
class exception : public std::exception {};

/// An image operation that cannot be carried out; what() has the reason.
class dip_exception : public exception {
public:
    explicit dip_exception(const char* message)
        : m_message(message) {}
    const char* what() const noexcept override { return m_message.what(); }

private:
    std::runtime_error m_message; // its copies never throw, as an exception's must not
};

} // namespace PDIP
