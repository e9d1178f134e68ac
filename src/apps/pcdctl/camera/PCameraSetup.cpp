// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PCameraSetup.h>

#include <apps/pcdctl/camera/PCameraSession.h>
#include <apps/pcdctl/camera/PCtlSettings.h>
#include <apps/pcdctl/properties/PPropertyJson.h>

#include <PCd/profile/PDeviceProfileFile.h>
#include <PCd/profile/PDeviceProfilePlan.h>

PCameraSetup::PCameraSetup(PCameraSession& session, const PCtlOptions& options)
    : m_session(session)
    , m_options(options) {
}

PCtlOutcome PCameraSetup::run() {
    if (!m_options.profile.isEmpty()) {
        const PCtlOutcome outcome = runProfile();
        if (!outcome.isDone())
            return outcome;
    }
    PCtlSettings settings;
    const PCtlOutcome outcome = settings.read(m_options.sets, *m_session.device());
    return outcome.isDone() ? settings.apply(m_session, m_options.timeout) : outcome;
}

PCtlOutcome PCameraSetup::runProfile() {
    PDeviceProfileReport report;
    const PCtlOutcome outcome = loadProfile(m_options.profile, report);
    if (!outcome.isDone() || report.isComplete())
        return outcome;
    return PCtlOutcome::failed(u"\"%1\" was not applied completely\n%2"_qs.arg(
        m_options.profile, PPropertyJson::reportLines(report.refused).join(u'\n')));
}

PCtlOutcome PCameraSetup::loadProfile(const QString& path, PDeviceProfileReport& report) {
    PDeviceProfile profile;
    PStatus status = PDeviceProfileFile::read(path, profile);
    if (!status.isOk())
        return PCtlOutcome::failed(status.reason());
    PDeviceProfilePlan plan(*m_session.device(), m_options.mode.isEmpty()
                                                     ? PDeviceProfilePlan::Mode::OfProfile
                                                     : PDeviceProfilePlan::Mode::AsItIs);
    status = plan.make(profile);
    if (!status.isOk())
        return PCtlOutcome::failed(status.reason());
    report = plan.apply();
    return {};
}
