// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/camera/PCameraSession.h>

#include <functional>

class PCtlHost;

/// Opens the camera that the options name, prepares it as they say, does the work with it, and
/// closes it. The main thread.
PCtlOutcome withCamera(PCtlHost& host, const PCtlOptions& options,
                       const std::function<PCtlOutcome(PCameraSession&)>& work);
