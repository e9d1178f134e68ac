// SPDX-License-Identifier: MIT
#include <PCd/plugins/TestRegister.h>
