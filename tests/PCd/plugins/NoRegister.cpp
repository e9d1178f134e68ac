// SPDX-License-Identifier: MIT
#include <PCd/plugins/NoRegister.h>
