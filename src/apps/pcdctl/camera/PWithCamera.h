// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/camera/PCameraSession.h>

#include <functional>

class PCtlHost;

/// Opens the camera the options name, prepared as they say, has the work done with it, and closes
/// it. The main thread.
PCtlOutcome withCamera(PCtlHost& host, const PCtlOptions& options,
                       const std::function<PCtlOutcome(PCameraSession&)>& work);
