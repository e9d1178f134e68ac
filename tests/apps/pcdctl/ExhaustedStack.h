// SPDX-License-Identifier: MIT
#pragma once

/// Ends the program, as its stack is exhausted. The value is used after the call, so that the
/// compiler cannot make a loop of this. Any thread.
inline int recurseForEver(volatile int depth) {
    volatile char room[1000];
    if (depth < 0) // never
        return 0;
    room[depth % 1000] = 1;
    return recurseForEver(depth + 1) + room[0];
}
