// SPDX-License-Identifier: MIT
#pragma once

/// Registers the framework's value types with Qt under the names that plugins and queued
/// connections use ("PMinMaxRange<int>", "PEnumeration" …). Any number of times, any thread.
void registerPCdMetaTypes();
