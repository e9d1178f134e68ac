// SPDX-License-Identifier: MIT
#include <apps/pcdview/FakeGatedExposure.h>

#include "moc_FakeGatedExposure.cpp"
