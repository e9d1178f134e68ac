// SPDX-License-Identifier: MIT
#include <python/property/PPythonValue.h>

#include <python/host/PPythonError.h>

#include <PCd/PEnumeration.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/value/PCompositeFields.h>
#include <PCd/property/value/PPropertyText.h>

#include <PCore/PMinMaxRange.h>
#include <PCore/PStatus.h>

#include <QRect>

#include <cmath>
#include <limits>
#include <optional>

namespace {

constexpr qsizetype longestText = 200; // characters of a value in a message

py::dict toFields(const QVariant& composite) {
    py::dict fields;
    for (const QString& name : PCompositeFields::names(composite)) {
        fields[py::cast(name)] =
            PPythonValue::toPython(PCompositeFields::read(composite, name), QVariant());
    }
    return fields;
}

/// A number of any kind that Python's float() takes, but no text; bool counts as one.
std::optional<double> toNumber(const py::handle& object) {
    if (PyUnicode_Check(object.ptr()) || PyBytes_Check(object.ptr()))
        return std::nullopt;
    const double number = PyFloat_AsDouble(object.ptr());
    if (number == -1 && PyErr_Occurred() != nullptr) {
        PPythonValue::forgetError();
        return std::nullopt;
    }
    return number;
}

std::optional<int> toWhole(const py::handle& object) {
    const std::optional<double> number = toNumber(object);
    const bool isWhole = number && *number >= std::numeric_limits<int>::min() &&
                         *number <= std::numeric_limits<int>::max() &&
                         std::floor(*number) == *number;
    return isWhole ? std::optional<int>(int(*number)) : std::nullopt;
}

/// Bytes are a sequence of numbers too, but no region.
bool isText(const py::handle& object) {
    return PyUnicode_Check(object.ptr()) || PyBytes_Check(object.ptr()) ||
           PyByteArray_Check(object.ptr());
}

QVariant toRegion(const py::handle& object, const PDeviceProperty& property) {
    if (!PySequence_Check(object.ptr()) || isText(object))
        return {};
    if (PySequence_Size(object.ptr()) != 4) {
        PPythonValue::forgetError(); // some have none, such as an array without dimensions
        return {};
    }
    QStringList parts;
    for (int i = 0; i < 4; ++i) {
        const auto item = py::reinterpret_steal<py::object>(PySequence_GetItem(object.ptr(), i));
        const std::optional<int> part = item ? toWhole(item) : std::nullopt;
        if (!part) {
            PPythonValue::forgetError(); // the sequence may have failed to give the item
            return {};
        }
        parts.append(QString::number(*part));
    }
    // As a text, because the corner of a region may lie where no int reaches.
    return PPropertyText::toValue(parts.join(u','), property.valueInner(), property.rangeInner());
}

QVariant toChoice(const py::handle& object, const PDeviceProperty& property) {
    if (!PyUnicode_Check(object.ptr()))
        return {};
    return PPropertyText::toValue(object.cast<QString>(), property.valueInner(),
                                  property.rangeInner());
}

/// A field's value as the text that PCompositeFields takes.
QString toFieldText(const py::handle& object) {
    if (PyBool_Check(object.ptr()))
        return object.ptr() == Py_True ? u"1"_qs : u"0"_qs;
    const auto text = py::reinterpret_steal<py::object>(PyObject_Str(object.ptr()));
    if (!text) {
        PPythonValue::forgetError(); // as of a number with too many digits: no value of a field
        return PPythonValue::toText(object);
    }
    return text.cast<QString>();
}

/// The present value with the fields that the dict has.
QVariant toComposite(const py::handle& object, const PDeviceProperty& property) {
    if (!PyDict_Check(object.ptr()))
        return {};
    QVariant value = property.valueInner();
    // Of a copy: what makes a text of an object may change the dict.
    const auto fields = py::reinterpret_steal<py::dict>(PyDict_Copy(object.ptr()));
    for (const auto& [key, given] : fields) {
        const QString name =
            PyUnicode_Check(key.ptr()) ? key.cast<QString>() : PPythonValue::toText(key);
        const PStatus status = PCompositeFields::write(value, name, toFieldText(given));
        if (!status.isOk()) {
            const QString id = QString::fromLatin1(property.id());
            throw PPythonError("BadValueError", u"\"%1\": %2"_qs.arg(id, status.reason()),
                               {{"property", id},
                                {"value", PPythonValue::toText(object)},
                                {"expected", PCompositeFields::expectation(value, name)}});
        }
    }
    return value;
}

template <typename Number>
QVariant toVariant(const std::optional<Number>& number) {
    return number ? QVariant(*number) : QVariant();
}

} // namespace

py::object PPythonValue::toPython(const QVariant& value, const QVariant& range) {
    if (value.isValid() && range.metaType() == QMetaType::fromType<PEnumeration>())
        return py::cast(range.value<PEnumeration>().getItem(value.toUuid()).name);
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return py::none();
    case QMetaType::Bool:
        return py::bool_(value.toBool());
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::UChar:
        return py::int_(value.toLongLong());
    case QMetaType::Double:
    case QMetaType::Float:
        return py::float_(value.toDouble());
    case QMetaType::QRect: {
        const QRect region = value.toRect();
        return py::make_tuple(region.x(), region.y(), region.width(), region.height());
    }
    default:
        return PCompositeFields::isComposite(value)
                   ? py::object(toFields(value))
                   : py::cast(PPropertyText::ofValue(value, range));
    }
}

QVariant PPythonValue::fromPython(const py::handle& object, const PDeviceProperty& property) {
    const QVariant range = property.rangeInner();
    const QVariant present = property.valueInner();
    if (range.metaType() == QMetaType::fromType<PEnumeration>())
        return toChoice(object, property);
    if (range.metaType() == QMetaType::fromType<PMinMaxRange<double>>() ||
        present.typeId() == QMetaType::Double)
        return toVariant(toNumber(object));
    if (present.typeId() == QMetaType::Bool) {
        const std::optional<int> number = toWhole(object);
        return number && (*number == 0 || *number == 1) ? QVariant(*number == 1) : QVariant();
    }
    if (present.typeId() == QMetaType::Int)
        return toVariant(toWhole(object));
    if (present.typeId() == QMetaType::QRect)
        return toRegion(object, property);
    if (PCompositeFields::isComposite(present))
        return toComposite(object, property);
    return {};
}

QString PPythonValue::toText(const py::handle& object) {
    const auto text = py::reinterpret_steal<py::object>(PyObject_Repr(object.ptr()));
    const auto bytes = py::reinterpret_steal<py::object>(
        text ? PyUnicode_AsEncodedString(text.ptr(), "utf-8", "backslashreplace") : nullptr);
    if (!bytes) {
        forgetError(); // a message about the value is wanted, not about its repr()
        return u"<%1>"_qs.arg(QString::fromUtf8(Py_TYPE(object.ptr())->tp_name));
    }
    const QString shown =
        QString::fromUtf8(PyBytes_AS_STRING(bytes.ptr()), PyBytes_GET_SIZE(bytes.ptr()));
    return shown.size() <= longestText ? shown : shown.left(longestText) + u'…';
}

void PPythonValue::forgetError() {
    if (PyErr_Occurred() != nullptr && PyErr_ExceptionMatches(PyExc_Exception) == 0)
        throw py::error_already_set();
    PyErr_Clear();
}
