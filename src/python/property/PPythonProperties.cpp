// SPDX-License-Identifier: MIT
#include <python/property/PPythonProperties.h>

#include <python/host/PPythonError.h>
#include <python/host/PPythonSession.h>
#include <python/property/PPythonUnit.h>
#include <python/property/PPythonValue.h>

#include <apps/common/camera/PCaptureMode.h>

#include <PCd/PEnumeration.h>
#include <PCd/PScanAreaRange.h>
#include <PCd/device/PDeviceRoles.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyCheck.h>
#include <PCd/property/value/PCompositeFields.h>
#include <PCd/property/value/PPropertyText.h>

#include <PCore/PMinMaxRange.h>
#include <PCore/PPrintableText.h>

#include <cmath>

namespace {

QString toName(const PDeviceProperty& property) {
    const QString role = PPythonUnit(property).name();
    return role.isEmpty() ? QString::fromLatin1(property.id()) : role;
}

bool isAction(const PDeviceProperty& property) {
    return property.type() == PCD::DevicePropertyType::Action;
}

QString kindName(const PDeviceProperty& property) {
    switch (property.type()) {
    case PCD::DevicePropertyType::Custom:
        return u"composite"_qs;
    case PCD::DevicePropertyType::Integer:
    case PCD::DevicePropertyType::Duration:
        return u"number"_qs;
    case PCD::DevicePropertyType::Switch:
        return u"switch"_qs;
    case PCD::DevicePropertyType::Choice:
        return u"choice"_qs;
    case PCD::DevicePropertyType::Action:
        return u"action"_qs;
    case PCD::DevicePropertyType::ScanArea:
        return u"region"_qs;
    }
    return u"composite"_qs;
}

/// A number as Python shows it.
QString shortText(double number) {
    return QString::number(number, 'g', 10);
}

using RealRange = PMinMaxRange<double>;
using WholeRange = PMinMaxRange<int>;

/// The range of a number as the device has it; nothing if it has none.
std::optional<RealRange> toRange(const QVariant& range) {
    if (range.metaType() == QMetaType::fromType<RealRange>())
        return range.value<RealRange>();
    if (range.metaType() != QMetaType::fromType<WholeRange>())
        return std::nullopt;
    const auto whole = range.value<WholeRange>();
    return RealRange{double(whole.minimum), double(whole.maximum), double(whole.step)};
}

bool isWhole(const PDeviceProperty& property) {
    return property.reportedValue().typeId() == QMetaType::Int; // unread, the value has no type
}

py::object toNumber(double number, bool whole) {
    return whole ? py::object(py::int_(qint64(number))) : py::object(py::float_(number));
}

py::object toPythonRange(const PDeviceProperty& property, const PPythonUnit& unit) {
    const std::optional<RealRange> range = toRange(property.rangeInner());
    if (!range || *range == RealRange{})
        return py::none();
    const bool whole = isWhole(property) && !unit.isConverted();
    return py::make_tuple(toNumber(unit.fromDevice(range->minimum), whole),
                          toNumber(unit.fromDevice(range->maximum), whole),
                          toNumber(unit.stepFromDevice(*range), whole));
}

py::object toChoices(const PDeviceProperty& property) {
    if (property.rangeInner().metaType() != QMetaType::fromType<PEnumeration>())
        return py::none();
    py::list names;
    const auto choices = property.rangeInner().value<PEnumeration>();
    for (const PEnumerationItem& item : choices.items())
        names.append(item.name);
    return py::tuple(names);
}

py::object toArea(const PDeviceProperty& property) {
    if (property.rangeInner().metaType() != QMetaType::fromType<PScanAreaRange>())
        return py::none();
    const auto area = property.rangeInner().value<PScanAreaRange>();
    py::dict found;
    found["bounds"] = PPythonValue::toPython(area.bounds, QVariant());
    found["minimum"] = py::make_tuple(area.minimumWidth, area.minimumHeight);
    found["step"] = py::make_tuple(area.widthStep, area.heightStep);
    found["offset_step"] = area.offsetStep;
    return found;
}

/// A value of the device in the property's unit.
py::object shownValue(const PDeviceProperty& property, const QVariant& value) {
    const PPythonUnit unit(property);
    if (unit.isConverted() && value.canConvert<double>())
        return py::float_(unit.fromDevice(value.toDouble()));
    return PPythonValue::toPython(value, property.rangeInner());
}

/// What the property can have, in its unit.
QString expectation(const PDeviceProperty& property) {
    const PPythonUnit unit(property);
    const py::object choices = toChoices(property);
    if (!choices.is_none()) // by their names, as in programs and files
        return u"one of "_qs +
               py::str(", ")
                   .attr("join")(
                       py::module_::import("builtins")
                           .attr("map")(py::module_::import("builtins").attr("repr"), choices))
                   .cast<QString>();
    const std::optional<RealRange> range = toRange(property.rangeInner());
    if (!unit.isConverted() || !range)
        return PPropertyCheck::expectation(property);
    QString text = u"a number from %1 to %2"_qs.arg(shortText(unit.fromDevice(range->minimum)),
                                                    shortText(unit.fromDevice(range->maximum)));
    return unit.text().isEmpty() ? text : text + u' ' + unit.text();
}

PPythonError badValue(const PDeviceProperty& property, const QString& value,
                      const QString& expected) {
    const QString name = toName(property);
    return PPythonError("BadValueError",
                        u"\"%1\" cannot be %2: expected %3"_qs.arg(name, value, expected),
                        {{"property", name}, {"value", value}, {"expected", expected}});
}

/// The object as a value of the device. Throws a BadValueError.
QVariant toDeviceValue(const PDeviceProperty& property, const py::object& object) {
    const PPythonUnit unit(property);
    QVariant value;
    if (unit.isConverted()) {
        const double number = PyFloat_AsDouble(object.ptr());
        const bool isNumber = PyErr_Occurred() == nullptr;
        PPythonValue::forgetError();
        const double converted = unit.toDevice(number);
        // Outside the range of int nothing is in that of a device.
        if (isNumber && !PyUnicode_Check(object.ptr()) && std::abs(converted) < 1e9)
            value = isWhole(property) ? QVariant(qRound(converted)) : QVariant(converted);
    } else {
        value = PPythonValue::fromPython(object, property);
    }
    if (!value.isValid() || !PPropertyCheck::check(property, value).isOk())
        throw badValue(property, PPythonValue::toText(object), expectation(property));
    return value;
}

/// The fields of a composite value that the device does not have as they were sent.
QString refusedFields(const QVariant& sent, const QVariant& present, const py::dict& given) {
    QStringList refused;
    for (const auto& [key, object] : given) {
        if (!PyUnicode_Check(key.ptr()))
            continue; // no other key was taken
        const auto name = key.cast<QString>();
        if (PCompositeFields::read(sent, name) != PCompositeFields::read(present, name))
            refused.append(
                u"%1 is %2"_qs.arg(name, PCompositeFields::read(present, name).toString()));
    }
    return refused.join(u", "_qs);
}

PPropertyCheck::Outcome sendUnlocked(PDeviceProperty& property, const QVariant& value) {
    const PUnlockedPython unlocked;
    return PPropertyCheck::send(property, value);
}

} // namespace

PPythonProperties::PPythonProperties(std::shared_ptr<PPythonSession> session)
    : m_session(std::move(session)) {
}

QStringList PPythonProperties::names() const {
    QStringList names;
    for (const PDeviceProperty* property : m_session->device().supportProperties())
        names.append(toName(*property));
    return names;
}

PDeviceProperty* PPythonProperties::findOrNull(const QString& name) const {
    const QList<PDeviceProperty*>& all = m_session->device().supportProperties();
    const auto found = std::find_if(all.begin(), all.end(), [&](const PDeviceProperty* property) {
        return toName(*property) == name;
    });
    return found != all.end() ? *found : m_session->device().getProperty(name.toUtf8());
}

PDeviceProperty& PPythonProperties::find(const QString& name) const {
    if (PDeviceProperty* const found = findOrNull(name))
        return *found;
    throw PPythonError("NoPropertyError",
                       u"camera %1 has no property \"%2\": it has %3"_qs.arg(
                           m_session->identity().id, name, names().join(u", "_qs)),
                       {{"property", name}});
}

QString PPythonProperties::canonicalName(const QString& name) const {
    return toName(find(name));
}

py::dict PPythonProperties::description(const QString& name) const {
    const PDeviceProperty& property = find(name);
    const PPythonUnit unit(property);
    py::dict found;
    found["name"] = toName(property);
    found["id"] = QString::fromLatin1(property.id());
    found["title"] = PPrintableText::toLine(property.title());
    found["kind"] = kindName(property);
    found["unit"] = unit.text();
    found["description"] = PPrintableText::toLine(property.description());
    found["range"] = toPythonRange(property, unit);
    found["choices"] = toChoices(property);
    found["area"] = toArea(property);
    found["default"] = shownValue(property, property.defaultValue());
    found["is_saved"] = property.isSerializable();
    return found;
}

py::object PPythonProperties::value(const QString& name) const {
    PDeviceProperty& property = find(name);
    if (isAction(property)) {
        throw PPythonError("BadValueError",
                           u"\"%1\" is an action and has no value: call its run()"_qs.arg(name),
                           {{"property", name}});
    }
    // In triggered capture the camera has the time of triggered frames, which must not take the
    // place of the live one.
    const bool isKept = PCompositeFields::isComposite(property.valueInner()) &&
                        PCaptureMode::isTriggered(m_session->device());
    if (!isKept) {
        const PUnlockedPython unlocked;
        property.updateValueFromDevice();
    }
    if (property.isUnread())
        failUnread(u"it did not report \"%1\""_qs.arg(name));
    return shownValue(property, property.valueInner());
}

/// One reading can fail although the camera is there.
void PPythonProperties::failUnread(const QString& reason) const {
    m_session->check(PStatus::failure(reason), "RefusedError");
}

void PPythonProperties::setValue(const QString& name, const py::object& object) const {
    PDeviceProperty& property = find(name);
    if (isAction(property)) {
        throw PPythonError("BadValueError",
                           u"\"%1\" is an action and takes no value: call its run()"_qs.arg(name),
                           {{"property", name}});
    }
    // Fields that are not given stay as the camera has them now; and what was not read has no type.
    const bool isComposite = PyDict_Check(object.ptr());
    if (isComposite || property.isUnread())
        this->value(name);
    if (!isComposite) {
        const QVariant value = toDeviceValue(property, object);
        send(property, value, PPythonValue::toText(object));
        return;
    }
    const QVariant value = toDeviceValue(property, object);
    if (sendUnlocked(property, value) == PPropertyCheck::Outcome::Unread)
        failUnread(u"it did not report \"%1\" after it was set"_qs.arg(toName(property)));
    const QString refused = refusedFields(value, property.valueInner(), object);
    if (!refused.isEmpty()) {
        throw PPythonError("RefusedError", u"the camera did not take all of \"%1\": %2"_qs.arg(
                                               toName(property), refused));
    }
}

void PPythonProperties::send(PDeviceProperty& property, const QVariant& value,
                             const QString& shown) const {
    const PPropertyCheck::Outcome outcome = sendUnlocked(property, value);
    if (outcome == PPropertyCheck::Outcome::Taken)
        return;
    const QString name = toName(property);
    if (outcome == PPropertyCheck::Outcome::Unread)
        failUnread(u"it did not report \"%1\" after it was set"_qs.arg(name));
    const QString present = PPythonValue::toText(shownValue(property, property.valueInner()));
    throw PPythonError("RefusedError",
                       u"the camera did not take %1 for \"%2\": it has %3%4"_qs.arg(
                           shown, name, present, hint(property)),
                       {{"property", name}, {"value", shown}});
}

/// What the user can do about a value that the camera did not take.
QString PPythonProperties::hint(const PDeviceProperty& property) const {
    const QString name = toName(property);
    const bool isExposure = name == PPythonUnit::roleName(PRole::ExposureTime) ||
                            name == PPythonUnit::roleName(PRole::Gain);
    if (isExposure && PDeviceRoles::of(m_session->device()).isOn(PRole::AutoExposure))
        return u"; automatic exposure is on: set auto_exposure = False first"_qs;
    return {};
}

void PPythonProperties::run(const QString& name) const {
    PDeviceProperty& property = find(name);
    if (!isAction(property)) {
        throw PPythonError("BadValueError", u"\"%1\" is no action: set its value"_qs.arg(name),
                           {{"property", name}});
    }
    bool isDone = false;
    {
        const PUnlockedPython unlocked;
        isDone = property.trySetValue(QVariant());
    }
    if (!isDone)
        throw PPythonError("RefusedError", u"the camera refused to run \"%1\""_qs.arg(name),
                           {{"property", name}});
}
