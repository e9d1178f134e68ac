// SPDX-License-Identifier: MIT
#include <PCd/property/PDeviceProperty.h>

#include <PCd/PMetaTypes.h>
#include <PCd/property/PReadWatch.h>
#include <PCd/property/PWidgetFactory.h>
#include <PCd/property/value/PCompositeFields.h>
#include <PCd/property/value/PPropertyEncoding.h>

#include <PCore/state/PAbstractReader.h>
#include <PCore/state/PAbstractWriter.h>

namespace {

/// The last known value, while the cached one is unread. Dynamic, because a member would change the
/// size of plugins' classes.
constexpr const char* reportedName = "pcd.reported";

QString valueName() {
    return u"value"_qs;
}

/// Types of plugins need not be comparable; what is saved of their values is.
bool areEqual(const QVariant& a, const QVariant& b) {
    return PPropertyEncoding::isComposite(a) && !a.metaType().isEqualityComparable()
               ? PPropertyEncoding::isSame(a, b, QVariant())
               : a == b;
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
    return PPropertyEncoding::write(*writer, valueName(), m_isUnread ? QVariant() : m_value,
                                    m_range);
}

bool PDeviceProperty::readValueFromStream(PAbstractReader* reader, const QString& name) {
    const QVariant form = PPropertyEncoding::read(*reader, name);
    const QVariant value = PPropertyEncoding::fromForm(form, m_value, m_range);
    if (!value.isValid())
        return false;
    setValue(value);
    return areEqual(m_value, value);
}

void PDeviceProperty::setValue(const QVariant& value) {
    emit valueAboutToBeSent(value);
    // The result alone proves nothing: some devices always report success, some the opposite.
    const bool keepAsGiven = trySetValue(value) && PPropertyEncoding::isComposite(value);
    if (keepAsGiven)
        setValueInner(value);
    else
        readBack();
    emit valueChanged(m_value);
}

QVariant PDeviceProperty::reportedValue() const {
    return m_isUnread ? property(reportedName) : m_value;
}

void PDeviceProperty::restore(const Cached& cached) {
    m_value = cached.value;
    m_isUnread = cached.isUnread;
    if (m_isUnread)
        setProperty(reportedName, cached.reported);
}

void PDeviceProperty::setUnreadValueInner(const QVariant& value) {
    restore({value, reportedValue(), true});
}

/// After a reading that failed. A composite value is still what the plugin returned, which is the
/// contract with its panels; any other is none.
void PDeviceProperty::cacheUnread(const QVariant& returned, const QVariant& reported) {
    const bool isKept = PPropertyEncoding::isComposite(returned);
    restore({isKept ? returned : QVariant(), reported, true});
}

void PDeviceProperty::readAtFirst() {
    const PReadWatch watch;
    const QVariant range = tryGetRange();
    m_range = watch.hasFailed() ? QVariant() : range;
    const QVariant value = tryGetValue();
    if (watch.hasFailed())
        cacheUnread(value, QVariant());
    else
        setValueInner(value);
}

void PDeviceProperty::readBack() {
    const QVariant known = reportedValue(); // if the device refused a composite value, it has this
    const PReadWatch watch;
    const QVariant value = tryGetValue();
    if (watch.hasFailed())
        cacheUnread(value, PPropertyEncoding::isComposite(value) ? known : QVariant());
    else
        setValueInner(value);
}

PDeviceProperty::Reading PDeviceProperty::readFromDevice() {
    const PReadWatch watch;
    const Reading reading = readAsReturned();
    return {watch.hasFailed() ? QVariant() : reading.value, reading.range};
}

/// The value as the plugin returned it, even if the device did not answer.
PDeviceProperty::Reading PDeviceProperty::readAsReturned() {
    const PReadWatch watch;
    const QVariant range = tryGetRange();
    const bool hasRange = !watch.hasFailed();
    // Reading a composite property may overwrite its cached value.
    const Cached known = cached();
    const QVariant value = PCompositeFields::withHostFields(
        tryGetValue(), known.reported.isValid() ? known.reported : known.value);
    restore(known);
    const bool keepsRange = watch.hasFailed() && (m_range.isValid() || !hasRange);
    return {value, keepsRange ? m_range : range};
}

void PDeviceProperty::restoreHostFields(const QVariant& before) {
    const QVariant restored = PCompositeFields::withHostFields(m_value, before);
    if (areEqual(restored, m_value))
        return;
    m_value = restored;
    if (!m_isUnread)
        emit valueChanged(m_value);
}

void PDeviceProperty::updateValueFromDevice(bool force) {
    update(force);
}

/// Returns false if the device did not answer.
bool PDeviceProperty::update(bool force) {
    const PReadWatch watch;
    const auto [value, range] = readAsReturned();
    const bool isRead = !watch.hasFailed();
    const bool rangeDiffers = range != m_range;
    const bool isComposite =
        PPropertyEncoding::isComposite(value) || PPropertyEncoding::isComposite(m_value);
    // Panels of composite values write back what they show, so these are not announced as unread.
    const bool valueDiffers =
        isRead ? m_isUnread || !areEqual(value, m_value) : !isComposite && m_value.isValid();
    m_range = range;
    if (isRead)
        setValueInner(value);
    else
        cacheUnread(value.isValid() ? value : m_value, reportedValue());
    if (rangeDiffers || force)
        emit rangeChanged(m_range);
    if (valueDiffers || force)
        emit valueChanged(m_value);
    return isRead;
}

#include "moc_PDeviceProperty.cpp"
