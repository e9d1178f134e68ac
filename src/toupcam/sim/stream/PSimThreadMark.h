// SPDX-License-Identifier: MIT
#pragma once

/// Shows whether the calling thread is one of an object's own threads, which must not wait for
/// themselves. Each of those threads holds one mark for as long as it runs.
class PSimThreadMark {
public:
    explicit PSimThreadMark(const void* owner) { s_owner = owner; }
    ~PSimThreadMark() { s_owner = nullptr; }
    PSimThreadMark(const PSimThreadMark&) = delete;
    PSimThreadMark& operator=(const PSimThreadMark&) = delete;

    static bool isOf(const void* owner) { return s_owner == owner; }

private:
    inline static thread_local const void* s_owner = nullptr;
};
