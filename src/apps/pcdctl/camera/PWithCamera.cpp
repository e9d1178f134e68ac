// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PWithCamera.h>

#include <apps/pcdctl/camera/PCtlHost.h>

namespace {

bool isAnswering(const PCameraSession& session) {
    return !session.isUnplugged() && !session.device()->getSupportModes().isEmpty();
}

} // namespace

PCtlOutcome withCamera(PCtlHost& host, const PCtlOptions& options,
                       const std::function<PCtlOutcome(PCameraSession&)>& work) {
    const PCtlHost::Choice choice = host.choose(options.camera);
    if (choice.device == nullptr)
        return choice.outcome;
    const bool hadModes = !choice.device->getSupportModes().isEmpty();
    PCameraSession session(host.manager(), choice.device);
    PCtlOutcome outcome = session.open(options);
    if (outcome.isDone())
        outcome = work(session);
    // Its values then read as zeros, without any error.
    if (outcome.isDone() && hadModes && !isAnswering(session))
        return PCtlOutcome::failed(
            u"camera %1 no longer answers: it was unplugged, or it hangs"_qs.arg(
                session.cameraId()));
    return outcome;
}
