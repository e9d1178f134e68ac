// SPDX-License-Identifier: MIT
#include <python/host/PPythonError.h>

#include <python/host/PPybind.h>

#include <PCore/PStatus.h>

PPythonError::PPythonError(const char* type, QString text, Attributes attributes)
    : m_type(type)
    , m_bytes(text.toUtf8())
    , m_attributes(std::move(attributes)) {
}

void PPythonError::check(const PStatus& status, const char* type) {
    if (!status.isOk())
        throw PPythonError(type, status.reason());
}

void PPythonError::setCurrent() const {
    try {
        const py::object type = py::module_::import("pcd.errors").attr(m_type);
        const py::object error = type(QString::fromUtf8(m_bytes));
        for (const auto& [name, value] : m_attributes)
            error.attr(name) = value;
        PyErr_SetObject(type.ptr(), error.ptr());
    } catch (py::error_already_set& failure) {
        failure.restore(); // what kept the exception from being made
    }
}
