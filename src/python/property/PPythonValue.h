// SPDX-License-Identifier: MIT
#pragma once

#include <python/host/PPybind.h>

#include <QVariant>

class PDeviceProperty;

/// Values of properties as Python's objects, and back. Any thread that holds the interpreter's
/// lock, unless a function says otherwise.
namespace PPythonValue {

/// A number, bool or text; the name of a choice; (x, y, width, height) of a region; a dict of the
/// fields of a composite value; None for an invalid one.
py::object toPython(const QVariant& value, const QVariant& range);

/// The value of an object for a property, not yet compared with its range. An invalid one if the
/// property cannot have values of such a kind. Throws PPythonError, "BadValueError", for a field of
/// a composite value that cannot be set; as forgetError() what the object raises. The device's
/// thread.
QVariant fromPython(const py::handle& object, const PDeviceProperty& property);

/// repr(object) for messages, if it is not too long; its type if that fails. Throws as
/// forgetError().
QString toText(const py::handle& object);

/// Forgets Python's error about a value, of which the caller makes one of its own. Throws it, as
/// py::error_already_set, if it is no `Exception` and so not about the value: KeyboardInterrupt.
void forgetError();

} // namespace PPythonValue
