// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CtlProcess.h>

#include <QDeadlineTimer>

#include <csignal>

namespace {

constexpr int longestRunMs = 120'000;

QProcessEnvironment plainEnvironment() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& name : environment.keys()) {
        if (name.startsWith(u"TOUPCAM_"_qs) || name.startsWith(u"PCD_"_qs))
            environment.remove(name);
    }
    // A call that takes long because the machine is busy is not to be reported.
    environment.insert(u"PCD_CALL_SECONDS"_qs, u"3600"_qs);
    return environment;
}

} // namespace

CtlProcess::CtlProcess(const QStringList& arguments)
    : m_environment(plainEnvironment()) {
    m_process.setProgram(QStringLiteral(PCDCTL_PROGRAM));
    m_process.setArguments(arguments);
}

CtlProcess::~CtlProcess() {
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished();
}

CtlProcess& CtlProcess::with(const QString& variable, const QString& value) {
    m_environment.insert(variable, value);
    return *this;
}

CtlProcess& CtlProcess::with(const std::function<void()>& modifier) {
    m_process.setChildProcessModifier(modifier);
    return *this;
}

CtlProcess& CtlProcess::start() {
    // A test that a script runs in the background ignores Ctrl-C, and its child would inherit that.
    std::signal(SIGINT, SIG_DFL);
    m_process.setProcessEnvironment(m_environment);
    m_process.start();
    m_started = true;
    return *this;
}

bool CtlProcess::finish() {
    if (!m_started)
        start();
    const bool finished =
        m_process.waitForFinished(longestRunMs) || m_process.state() == QProcess::NotRunning;
    m_output += m_process.readAllStandardOutput();
    return finished;
}

bool CtlProcess::waitForOutput(const QByteArray& text) {
    const QDeadlineTimer deadline(longestRunMs);
    while (!m_output.contains(text)) {
        if (deadline.hasExpired() || m_process.state() == QProcess::NotRunning)
            return false;
        m_process.waitForReadyRead(1000);
        m_output += m_process.readAllStandardOutput();
    }
    return true;
}

bool CtlProcess::waitForErrors(const QByteArray& text) {
    const QDeadlineTimer deadline(longestRunMs);
    m_process.setReadChannel(QProcess::StandardError);
    QByteArray errors = this->errors();
    while (!errors.contains(text)) {
        if (deadline.hasExpired() || m_process.state() == QProcess::NotRunning)
            return false;
        m_process.waitForReadyRead(1000);
        errors += this->errors();
    }
    return true;
}

bool CtlProcess::isRunning() {
    return !m_process.waitForFinished(0) && m_process.state() != QProcess::NotRunning;
}

void CtlProcess::sendSignal(int number) {
    // Never to process 0, which means this test's own group.
    if (m_process.processId() > 0)
        ::kill(pid_t(m_process.processId()), number);
}

int CtlProcess::exitCode() const {
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

int CtlProcess::endingSignal() const {
    // Of a process that crashed, this is the signal.
    return m_process.exitStatus() == QProcess::CrashExit ? m_process.exitCode() : 0;
}

QByteArray CtlProcess::errors() {
    return m_process.readAllStandardError();
}

QJsonObject CtlProcess::json() const {
    return QJsonDocument::fromJson(m_output).object();
}

CtlResult runCtl(const QStringList& arguments) {
    return runCtl(arguments, [](CtlProcess&) {});
}

CtlResult runCtl(const QStringList& arguments, const std::function<void(CtlProcess&)>& prepare) {
    CtlProcess process(arguments);
    prepare(process);
    if (!process.start().finish())
        return {};
    return {process.exitCode(), process.output(), QString::fromUtf8(process.errors()),
            process.json()};
}
