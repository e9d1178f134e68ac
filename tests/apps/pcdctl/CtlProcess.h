// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>

#include <functional>

// Arguments of many command lines.
inline const QString listWord = u"list"_qs;
inline const QString jsonWord = u"--json"_qs;

/// pcdctl as the user runs it: the built program, its arguments, output and exit code. One thread.
class CtlProcess {
public:
    explicit CtlProcess(const QStringList& arguments);
    /// Kills it if it is still running.
    ~CtlProcess();

    /// To be called before start(): sets an environment variable, or a function that the new
    /// process calls before the program.
    CtlProcess& with(const QString& variable, const QString& value);
    CtlProcess& with(const std::function<void()>& modifier);

    CtlProcess& start();
    /// Starts it if necessary, and waits for its end; false on a timeout.
    bool finish();
    /// Waits until the standard output contains this.
    bool waitForOutput(const QByteArray& text);
    /// Waits until the standard error stream contains this, which errors() then no longer returns.
    bool waitForErrors(const QByteArray& text);
    void sendSignal(int number);
    bool isRunning();
    /// While it is running: its id in the system.
    qint64 id() const { return m_process.processId(); }

    /// After finish(): the exit code; -1 if it was killed or crashed.
    int exitCode() const;
    /// After finish(): the signal that ended it; 0 if it ended by itself.
    int endingSignal() const;
    const QByteArray& output() const { return m_output; }
    QByteArray errors();
    /// The standard output as one JSON document; empty if it is anything else.
    QJsonObject json() const;

private:
    QProcess m_process;
    QProcessEnvironment m_environment;
    QByteArray m_output;
    bool m_started = false;
};

/// What one run produced.
struct CtlResult {
    int exitCode = -1;
    QByteArray output;
    QString errors;
    QJsonObject json;
};
CtlResult runCtl(const QStringList& arguments);
/// Likewise, after `prepare` was called on the process.
CtlResult runCtl(const QStringList& arguments, const std::function<void(CtlProcess&)>& prepare);
