// SPDX-License-Identifier: MIT
#include "PCameraWork.h"

#include "PCtlHost.h"

PCtlOutcome withCamera(PCtlHost& host, const PCtlOptions& options,
                       const std::function<PCtlOutcome(PCameraSession&)>& work) {
    const PCtlHost::Choice choice = host.choose(options.camera);
    if (choice.device == nullptr)
        return choice.outcome;
    PCameraSession session(host.manager(), choice.device);
    const PCtlOutcome opened = session.open(options);
    return opened.isDone() ? work(session) : opened;
}
