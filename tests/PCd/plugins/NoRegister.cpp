// SPDX-License-Identifier: MIT
#include <PCd/plugins/NoRegister.h>

#include "moc_NoRegister.cpp"
