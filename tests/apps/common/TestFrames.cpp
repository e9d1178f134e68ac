// SPDX-License-Identifier: MIT
#include <apps/common/TestFrames.h>

#include "moc_TestFrames.cpp"
