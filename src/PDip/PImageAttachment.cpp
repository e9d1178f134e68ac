// SPDX-License-Identifier: MIT
#include <PDip/PImageAttachment.h>

PImageAttachment::~PImageAttachment() = default;
