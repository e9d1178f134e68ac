// SPDX-License-Identifier: MIT
#include "TestRegister.h"
