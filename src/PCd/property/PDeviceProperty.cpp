// SPDX-License-Identifier: MIT
#include <PCd/property/PDeviceProperty.h>

#include <PCd/PMetaTypes.h>
#include <PCd/property/PWidgetFactory.h>
#include <PCd/property/value/PCompositeFields.h>
#include <PCd/property/value/PPropertyEncoding.h>

#include <PCore/state/PAbstractReader.h>
#include <PCore/state/PAbstractWriter.h>

namespace {

QString valueName() {
    return u"value"_qs;
}

} // namespace

PDeviceProperty::PDeviceProperty(QByteArray id, QString title, PCD::DevicePropertyType type)
    : m_id(std::move(id))
    , m_title(std::move(title))
    , m_type(type) {
    registerPCdMetaTypes();
}

PDeviceProperty::~PDeviceProperty() = default;

QWidget* PDeviceProperty::createWidget() {
    return PWidgetFactory::createPropertyEditor(this);
}

bool PDeviceProperty::readStreamThis(PAbstractReader* reader) {
    return readValueFromStream(reader, valueName());
}

bool PDeviceProperty::writeStreamThis(PAbstractWriter* writer, const QString& name) {
    if (!m_serializable)
        return true;
    writer->beginObject(name);
    const bool done = writeValueToStream(writer);
    writer->endObject();
    return done;
}

bool PDeviceProperty::writeValueToStream(PAbstractWriter* writer) const {
    return PPropertyEncoding::write(*writer, valueName(), m_value, m_range);
}

bool PDeviceProperty::readValueFromStream(PAbstractReader* reader, const QString& name) {
    const QVariant form = PPropertyEncoding::read(*reader, name);
    const QVariant value = PPropertyEncoding::fromForm(form, m_value, m_range);
    if (!value.isValid())
        return false;
    setValue(value);
    return m_value == value;
}

void PDeviceProperty::setValue(const QVariant& value) {
    emit valueAboutToBeSent(value);
    // The result alone proves nothing: some devices always report success, some the opposite.
    const bool keepAsGiven = trySetValue(value) && PPropertyEncoding::isComposite(value);
    m_value = keepAsGiven ? value : tryGetValue();
    emit valueChanged(m_value);
}

PDeviceProperty::Reading PDeviceProperty::readFromDevice() {
    Reading reading;
    reading.range = tryGetRange();
    // Reading a composite property may overwrite its cached value.
    const QVariant known = m_value;
    reading.value = PCompositeFields::withHostFields(tryGetValue(), known);
    m_value = known;
    return reading;
}

void PDeviceProperty::restoreHostFields(const QVariant& before) {
    const QVariant restored = PCompositeFields::withHostFields(m_value, before);
    if (restored == m_value)
        return;
    m_value = restored;
    emit valueChanged(m_value);
}

void PDeviceProperty::updateValueFromDevice(bool force) {
    const auto [value, range] = readFromDevice();
    const bool rangeDiffers = range != m_range;
    const bool valueDiffers = value != m_value;
    m_range = range;
    m_value = value;
    if (rangeDiffers || force)
        emit rangeChanged(m_range);
    if (valueDiffers || force)
        emit valueChanged(m_value);
}
