// SPDX-License-Identifier: MIT
#pragma once

#include <sched.h>

/// Keeps the calling thread on one core as long as the object exists. Where threads run decides how
/// long one takes to wake another: without this, two measurements of the same thing differ by
/// factors.
class OwnCore {
public:
    /// A number from 0; the cores that this process may use are counted round and round.
    explicit OwnCore(int number);
    ~OwnCore();
    OwnCore(const OwnCore&) = delete;
    OwnCore& operator=(const OwnCore&) = delete;

private:
    cpu_set_t m_before;
};
