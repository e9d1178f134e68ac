// SPDX-License-Identifier: MIT
#include <PCd/plugins/OtherRegister.h>
