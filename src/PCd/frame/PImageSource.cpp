// SPDX-License-Identifier: MIT
#include <PCd/frame/PImageSource.h>

#include "moc_PImageSource.cpp"
