// SPDX-License-Identifier: MIT
#include <view/CoreTime.h>

#include <fstream>

CoreTime CoreTime::ofThisThread() {
    std::ifstream account("/proc/thread-self/schedstat");
    long long used = 0; // in nanoseconds
    long long waited = 0;
    account >> used >> waited;
    return {double(used) / 1e9, double(waited) / 1e9};
}

CoreTime CoreTime::operator-(const CoreTime& earlier) const {
    return {used - earlier.used, waited - earlier.waited};
}
