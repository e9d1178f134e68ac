// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PWithCamera.h>

#include <apps/pcdctl/camera/PCtlHost.h>

PCtlOutcome withCamera(PCtlHost& host, const PCtlOptions& options,
                       const std::function<PCtlOutcome(PCameraSession&)>& work) {
    const PCtlHost::Choice choice = host.choose(options.camera);
    if (choice.device == nullptr)
        return choice.outcome;
    PCameraSession session(host.manager(), choice.device);
    const PCtlOutcome outcome = session.open(options);
    return outcome.isDone() ? work(session) : outcome;
}
