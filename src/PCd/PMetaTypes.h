// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// Registration of the framework's value types with Qt.

#include <PCore/PExport.h>

/// Registers the framework's value types with Qt under the names that plugins and queued
/// connections use ("PMinMaxRange<int>", "PEnumeration" …). May be called repeatedly, on any
/// thread.
PCD_EXPORT void registerPCdMetaTypes();
