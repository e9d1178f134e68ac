// SPDX-License-Identifier: MIT
#include "OtherRegister.h"
