// SPDX-License-Identifier: MIT
#include <PDip/dip_exception.h>

namespace PDIP {

exception::~exception() = default;

const char* dip_exception::what() const noexcept {
    return m_message.what();
}

} // namespace PDIP
