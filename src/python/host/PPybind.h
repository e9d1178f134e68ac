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
        if (isHeld())
            m_release.emplace();
    }

private:
    /// Not PyGILState_Check(), which is always true once there was a second interpreter.
    static bool isHeld() {
        const PyThreadState* const own = PyGILState_GetThisThreadState();
        return own != nullptr && own == py::detail::get_thread_state_unchecked();
    }

    std::optional<py::gil_scoped_release> m_release;
};

/// For the type of a class that only the module makes objects of: those that Python would make
/// have no content, and every function would crash.
inline void forbidNew(PyHeapTypeObject* type) {
    type->ht_type.tp_new = [](PyTypeObject* made, PyObject*, PyObject*) -> PyObject* {
        PyErr_Format(PyExc_TypeError, "%s is made by cameras only: see help(pcd.open)",
                     made->tp_name);
        return nullptr;
    };
}

namespace pybind11::detail {

/// Converts between QString and str. Any thread that holds the interpreter's lock.
template <>
struct type_caster<QString> {
    PYBIND11_TYPE_CASTER(QString, const_name("str"));

    /// False for anything but a str. Half characters, which UTF-8 does not have, become "?".
    bool load(handle source, bool) {
        if (!PyUnicode_Check(source.ptr()))
            return false;
        const auto bytes =
            reinterpret_steal<object>(PyUnicode_AsEncodedString(source.ptr(), "utf-8", "replace"));
        if (!bytes) { // no memory
            PyErr_Clear();
            return false;
        }
        value = QString::fromUtf8(PyBytes_AS_STRING(bytes.ptr()), PyBytes_GET_SIZE(bytes.ptr()));
        return true;
    }
    /// Characters that UTF-8 does not have are replaced.
    static handle cast(const QString& text, return_value_policy, handle) {
        const QByteArray bytes = text.toUtf8();
        return PyUnicode_DecodeUTF8(bytes.constData(), bytes.size(), "replace");
    }
};

} // namespace pybind11::detail
