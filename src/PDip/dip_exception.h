// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <stdexcept>
#include <string>

namespace PDIP {

/// Base class of the image library's exceptions.
class PCD_EXPORT exception : public std::exception {
public:
    ~exception() override; // defined in the library, so that all others share its type
};

/// A failed image operation; what() is the reason.
class PCD_EXPORT dip_exception : public exception {
public:
    explicit dip_exception(const char* message)
        // Makes a member, which nobody throws. NOLINTNEXTLINE(bugprone-throw-keyword-missing)
        : m_message(message) {}
    const char* what() const noexcept override;

private:
    std::runtime_error m_message; // copying it never throws, as required of exceptions
};

} // namespace PDIP
