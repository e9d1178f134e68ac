// SPDX-License-Identifier: MIT
#include <PCd/plugins/OtherRegister.h>

#include "moc_OtherRegister.cpp"
