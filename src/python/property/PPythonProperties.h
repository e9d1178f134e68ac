// SPDX-License-Identifier: MIT
#pragma once

#include <python/host/PPybind.h>

#include <PCd/property/value/PRole.h>

#include <memory>
#include <optional>

class PDeviceProperty;
class PPythonSession;

/// The properties of an open camera by name: the name of the role that the value as a whole has, or
/// else the id. A property with a role has the role's unit. All functions throw PPythonError; the
/// thread of PPythonHost, with the interpreter's lock.
class PPythonProperties {
public:
    explicit PPythonProperties(std::shared_ptr<PPythonSession> session);

    /// The names, in the order of the device's list.
    QStringList names() const;
    /// The name of the property with this name or id. "NoPropertyError" if there is none.
    QString canonicalName(const QString& name) const;
    /// Everything about a property but its value, as a dict.
    py::dict description(const QString& name) const;
    /// A number, a bool, the name of a choice, a `Region`, or a dict of fields; read from the
    /// camera. `RefusedError` if the camera does not report it.
    ///
    /// Of a composite property, the fields that the assigned dict does not have stay as they are.
    /// A value that is not possible raises `BadValueError`, and nothing is sent; one that the
    /// camera does not take raises `RefusedError`.
    py::object value(const QString& name) const;
    /// Sends a value. "BadValueError" names property, value and what was expected, and sends
    /// nothing; "RefusedError" if the camera then has another value, or does not report it.
    void setValue(const QString& name, const py::object& value) const;
    /// Runs an action, such as one white balance; some need a running stream.
    void run(const QString& name) const;

private:
    PDeviceProperty& find(const QString& name) const;
    PDeviceProperty* findOrNull(const QString& name) const;
    void send(PDeviceProperty& property, const QVariant& value, const QString& shown) const;
    /// Throws "UnpluggedError" if the camera no longer answers, else "RefusedError" with the
    /// reason.
    void failUnread(const QString& reason) const;
    QString hint(const PDeviceProperty& property) const;

    std::shared_ptr<PPythonSession> m_session;
};
