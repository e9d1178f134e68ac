// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

/// While this object exists, the rights of files hold for this thread, even if root runs the test.
class FileRightsApply {
public:
    FileRightsApply() {
        ::syscall(SYS_capget, &m_header, m_before.data());
        Sets sets = m_before;
        sets.front().effective &= ~overrides;
        ::syscall(SYS_capset, &m_header, sets.data());
    }
    ~FileRightsApply() { ::syscall(SYS_capset, &m_header, m_before.data()); }
    FileRightsApply(const FileRightsApply&) = delete;
    FileRightsApply& operator=(const FileRightsApply&) = delete;

    /// The same for the rest of this process and for the program it starts. For
    /// CtlProcess::with().
    static void forGood() {
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        Sets sets{};
        ::syscall(SYS_capget, &header, sets.data());
        sets.front().effective &= ~overrides;
        sets.front().permitted &= ~overrides;
        sets.front().inheritable &= ~overrides;
        ::syscall(SYS_capset, &header, sets.data());
        ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    }

private:
    using Sets = std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3>;
    static constexpr unsigned overrides = (1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH);

    __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
    Sets m_before{};
};
