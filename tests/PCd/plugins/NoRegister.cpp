// SPDX-License-Identifier: MIT
#include "NoRegister.h"
