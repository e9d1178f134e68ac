// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QString>

/// Result of an operation that succeeds or fails with a reason. A value type; any thread.
class PCD_EXPORT PStatus {
public:
    /// How the operation ended.
    enum Code { Ok, Failed };

    PStatus(Code code = Ok) // implicit, so that hooks can `return PStatus::Ok;`
        : m_code(code) {}

    /// A failure with its reason in plain words, ready to be shown to the user.
    static PStatus failure(const QString& reason) {
        PStatus status(Failed);
        status.m_reason = reason;
        return status;
    }

    bool isOk() const { return m_code == Ok; }
    /// Why it failed; empty on success.
    const QString& reason() const { return m_reason; }

private:
    Code m_code;
    QString m_reason;
};
