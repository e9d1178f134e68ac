// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <exception>
#include <utility>
#include <vector>

class PStatus;

/// A failure on its way to Python, where it becomes an exception of `pcd.errors`. A value type; any
/// thread, with or without the interpreter's lock.
class PPythonError : public std::exception {
public:
    using Attributes = std::vector<std::pair<const char*, QString>>;

    /// `type`: the name of the class in pcd.errors; `attributes`: those of the exception.
    PPythonError(const char* type, QString text, Attributes attributes = {});

    const char* what() const noexcept override { return m_bytes.constData(); }
    /// Throws an Error with this reason if the status is a failure.
    static void check(const PStatus& status, const char* type = "Error");
    /// Makes it Python's current exception. Needs the interpreter's lock.
    void setCurrent() const;

private:
    const char* m_type;
    QByteArray m_bytes;
    Attributes m_attributes;
};
