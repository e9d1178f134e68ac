// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/PCheckRun.h>

#include <apps/pcdctl/camera/PCtlHost.h>
#include <apps/pcdctl/cli/PCtlOutput.h>

#include <apps/common/file/PResultFile.h>
#include <apps/common/hang/POverdueCalls.h>
#include <apps/common/hang/PStderrLine.h>

#include <algorithm>
#include <cstdio>

#include <unistd.h>

namespace {

constexpr std::chrono::seconds usualTimeout(10);

/// What the watch has seen, for the report.
QString describeHang(PHangWatch::Milliseconds waited) {
    const QString calls = POverdueCalls::names();
    const QString seconds = QString::number(double(waited.count()) / 1000, 'f', 1);
    return calls.isEmpty()
               ? u"the driver has not returned for %1 s; it has marked no call as in progress"_qs
                     .arg(seconds)
               : u"the driver has not returned for %1 s, waiting for %2"_qs.arg(seconds, calls);
}

/// Why the number does not tell which camera it is; empty if it does.
QString findSerialProblem(PCtlHost& host, const QString& serial) {
    if (serial.isEmpty())
        return u"the camera has no serial number"_qs;
    const QList<PDevice*> devices = host.manager().devices();
    const auto count = std::count_if(devices.begin(), devices.end(), [&](const PDevice* device) {
        return host.identify(device).serial == serial;
    });
    return count > 1 ? u"several cameras have the serial number \"%1\""_qs.arg(serial) : QString();
}

} // namespace

PCheckRun::PCheckRun(PCtlHost& host, PDevice* device, const QList<PCheckRule>& rules,
                     const PCtlOptions& options)
    : m_options(options)
    , m_camera(host.identify(device))
    , m_watch(options.hangTime(), [this](PHangWatch::Milliseconds waited) { endHung(waited); })
    , m_bench(host.manager(), device, m_watch, options.timeout.value_or(usualTimeout))
    , m_runner(m_bench, m_watch, rules, options.check) {
    if (m_camera.simulated) {
        m_bench.setCable(PCheckCable([&sdk = host.sdk(), serial = m_camera.serial,
                                      problem = findSerialProblem(host, m_camera.serial)](bool in) {
            return problem.isEmpty() ? sdk.setPlugged(serial, in) : PStatus::failure(problem);
        }));
    }
}

PCtlOutcome PCheckRun::run() {
    if (!m_options.json)
        printAsItComes();
    const PStatus opened = m_runner.open();
    if (!opened.isOk()) {
        const bool isReported = m_runner.report().totals().failed > 0;
        return isReported ? finish() : PCtlOutcome::failed(opened.reason());
    }
    const bool isComplete = m_runner.run();
    const PCtlOutcome finished = finish();
    return isComplete ? finished
                      : PCtlOutcome::failed(u"interrupted before the check was complete"_qs);
}

PCtlOutcome PCheckRun::finish() {
    const PCtlOutcome saved = save();
    printReport();
    return saved.isDone() ? judge() : saved;
}

void PCheckRun::printAsItComes() {
    PCtlOutput::printLine(u"Camera %1"_qs.arg(m_camera.id));
    PCtlOutput::flush();
    QObject::connect(
        &m_runner, &PCheckRunner::caseBegins, &m_runner,
        [this](const QString& rule, const QString& where) { m_printer.showCase(rule, where); });
    QObject::connect(&m_runner, &PCheckRunner::caseFailed, &m_runner,
                     [this](const PCheckRule& rule, const QString& where, const QString& seen) {
                         m_printer.printFailure(m_runner.report().entry(rule), where, seen);
                     });
    QObject::connect(
        &m_runner, &PCheckRunner::ruleEnded, &m_runner,
        [this](const PCheckRule& rule) { m_printer.printRule(m_runner.report().entry(rule)); });
}

void PCheckRun::printReport() {
    if (!m_options.json) {
        PCtlOutput::printLine(PCheckPrinter::describeTotals(m_runner.report()));
        return;
    }
    QJsonObject document{{u"camera"_qs, PCtlOutput::toJson(m_camera)}};
    const QJsonObject report = m_runner.report().toJson();
    for (auto entry = report.begin(); entry != report.end(); ++entry)
        document.insert(entry.key(), entry.value());
    PCtlOutput::printDocument(document);
}

PCtlOutcome PCheckRun::save() const {
    const QString& file = m_options.check.junitFile;
    if (file.isEmpty())
        return {};
    const PStatus written = PResultFile::write(file, m_runner.report().toJUnit(m_camera.id));
    return written.isOk() ? PCtlOutcome() : PCtlOutcome::failed(written.reason());
}

PCtlOutcome PCheckRun::judge() const {
    const PCheckReport::Totals totals = m_runner.report().totals();
    if (totals.failed > 0)
        return PCtlOutcome::failed(u"the camera breaks %1 of %2 rules"_qs.arg(
            QString::number(totals.failed), QString::number(m_runner.report().entries().size())));
    return totals.cases > 0 ? PCtlOutcome() : PCtlOutcome::failed(u"nothing could be examined"_qs);
}

/// On the watch's thread, while the main thread is in the driver, and cannot leave it.
void PCheckRun::endHung(PHangWatch::Milliseconds waited) {
    const QString seen = describeHang(waited);
    m_runner.endEarly(seen);
    const PCtlOutcome saved = save();
    printHang(seen);
    if (!saved.isDone())
        PStderrLine::write(u"pcdctl: "_qs + saved.message);
    PStderrLine::write(
        u"pcdctl: the check ends in %1 (%2), and settings were not put back: %3"_qs.arg(
            m_runner.place().rule.id, m_runner.place().where, seen));
    // A thread cannot be ended from outside, and exit() would wait for locks that it holds. All
    // that must not be lost has been written.
    ::_exit(PCtlOutcome::Failed);
}

void PCheckRun::printHang(const QString& seen) {
    // The driver may hang inside the stream. Then only the file and the message remain.
    if (::ftrylockfile(stdout) != 0)
        return;
    if (!m_options.json) {
        const PCheckReport::Entry& entry = m_runner.report().entry(m_runner.place().rule);
        m_printer.printFailure(entry, m_runner.place().where, seen);
        m_printer.printRule(entry);
    }
    printReport();
    if (!PCtlOutput::flush())
        PStderrLine::write(u"pcdctl: cannot write to standard output"_qs);
    ::funlockfile(stdout);
}
