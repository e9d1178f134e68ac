// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// pybind11 beside Qt: Python's headers have a member named `slots`, which is a macro of Qt's; and
/// texts of Qt as Python's `str`. Conversions need the interpreter's lock.

#include <QString>

#include <optional>

#pragma push_macro("slots")
#undef slots
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#pragma pop_macro("slots")

namespace py = pybind11;

/// Releases the interpreter's lock as long as it exists, if this thread holds it. Any thread.
class PUnlockedPython {
public:
    PUnlockedPython() {
        if (PyGILState_Check() != 0)
            m_release.emplace();
    }

private:
    std::optional<py::gil_scoped_release> m_release;
};

namespace pybind11::detail {

/// Converts between QString and str. Any thread that holds the interpreter's lock.
template <>
struct type_caster<QString> {
    PYBIND11_TYPE_CASTER(QString, const_name("str"));

    /// False for anything but a str, and for one that is not valid Unicode.
    bool load(handle source, bool) {
        if (!PyUnicode_Check(source.ptr()))
            return false;
        Py_ssize_t size = 0;
        const char* const text = PyUnicode_AsUTF8AndSize(source.ptr(), &size);
        if (text == nullptr)
            PyErr_Clear();
        else
            value = QString::fromUtf8(text, size);
        return text != nullptr;
    }
    /// Characters that UTF-8 does not have are replaced.
    static handle cast(const QString& text, return_value_policy, handle) {
        const QByteArray bytes = text.toUtf8();
        return PyUnicode_DecodeUTF8(bytes.constData(), bytes.size(), "replace");
    }
};

} // namespace pybind11::detail
