// SPDX-License-Identifier: MIT
#pragma once

/// Registers the framework's value types with Qt under the names that plugins and queued
/// connections use ("PMinMaxRange<int>", "PEnumeration" …). May be called repeatedly, on any
/// thread.
void registerPCdMetaTypes();
