// SPDX-License-Identifier: MIT
#include <PCd/plugins/TestRegister.h>

#include "moc_TestRegister.cpp"
