// SPDX-License-Identifier: MIT
#include <apps/pcdctl/doctor/PDoctorRun.h>

#include <apps/pcdctl/doctor/PCameraTrial.h>

#include <apps/common/doctor/PClockExamination.h>
#include <apps/common/doctor/PCrashExamination.h>
#include <apps/common/doctor/PHolderExamination.h>
#include <apps/common/doctor/PPluginExamination.h>
#include <apps/common/doctor/PSdkExamination.h>
#include <apps/common/doctor/PStorageExamination.h>
#include <apps/common/doctor/PUsbAccessExamination.h>
#include <apps/common/doctor/PUsbLinkExamination.h>
#include <apps/common/program/PTerminationSignals.h>
#include <apps/common/record/PWriteMemory.h>

#include <utility>

PDoctorRun::PDoctorRun(const PCtlOptions& options, PSystemTree system)
    : m_options(options)
    , m_system(std::move(system))
    , m_rate(options.doctor.rate) {
}

PCtlOutcome PDoctorRun::run() {
    const PCtlOutcome outcome = examineSdk();
    if (!outcome.isDone())
        return outcome;
    examinePlugins();
    // Without the library that the user wants, the plugin would look for another one.
    if (m_hasSdk || m_host.sdk().isFallback())
        examineCamera();
    if (PTerminationSignals::isNoted())
        return PCtlOutcome::failed(u"interrupted before the examination was complete"_qs);
    examineUsb();
    examineComputer();
    const PStatus traced = m_host.checkTrace();
    return traced.isOk() ? PCtlOutcome() : PCtlOutcome::failed(traced.reason());
}

PCtlOutcome PDoctorRun::examineSdk() {
    const PStatus loaded = m_host.loadSdk(m_options.sdk);
    m_hasSdk = loaded.isOk();
    m_findings += PSdkExamination(m_host.sdk(), loaded).run();
    if (!m_hasSdk)
        return {};
    if (!m_options.scene.isEmpty()) {
        const PStatus scene = m_host.loadScene(m_options.scene);
        if (!scene.isOk())
            return PCtlOutcome::wrongUsage(scene.reason());
    }
    return startTrace();
}

PCtlOutcome PDoctorRun::startTrace() {
    if (m_options.trace.isEmpty())
        return {};
    const PStatus started = m_host.startTrace({m_options.trace, m_options.traceFrames});
    return started.isOk() ? PCtlOutcome() : PCtlOutcome::failed(started.reason());
}

void PDoctorRun::examinePlugins() {
    m_host.loadPlugins(m_options.pluginPaths);
    m_findings += PPluginExamination(m_host.pluginFiles(), m_host.pluginFailures()).run();
}

void PDoctorRun::examineCamera() {
    PCameraTrial trial(m_host, m_options);
    m_findings += trial.run();
    if (!m_rate)
        m_rate = trial.rate();
}

void PDoctorRun::examineUsb() {
    m_findings += PUsbAccessExamination(m_system, !m_host.manager().devices().isEmpty()).run();
    m_findings += PUsbLinkExamination(m_system).run();
    m_findings += PHolderExamination(m_system).run();
}

void PDoctorRun::examineComputer() {
    m_findings +=
        PStorageExamination(m_system, m_options.doctor.folder, m_rate, PWriteMemory::defaultLimit())
            .run();
    m_findings += PClockExamination(PSystemClock::read(m_system)).run();
    m_findings += PCrashExamination::run();
}
