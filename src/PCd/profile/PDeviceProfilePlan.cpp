// SPDX-License-Identifier: MIT
#include <PCd/profile/PDeviceProfilePlan.h>

#include <PCd/PEnumeration.h>
#include <PCd/PScanAreaRange.h>
#include <PCd/device/PDevice.h>
#include <PCd/profile/PDeviceProfileOrder.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyCheck.h>
#include <PCd/property/PQuietReading.h>
#include <PCd/property/PReadWatch.h>
#include <PCd/property/value/PCompositeFields.h>
#include <PCd/property/value/PPropertyEncoding.h>
#include <PCd/property/value/PPropertyText.h>

#include <algorithm>

namespace {

std::optional<PDeviceMode> modeWithId(const QList<PDeviceMode>& modes, const QString& id) {
    for (const PDeviceMode& mode : modes) {
        if (QString::fromLatin1(mode.id) == id)
            return mode;
    }
    return std::nullopt;
}

QString expectedMode(const QList<PDeviceMode>& modes) {
    QStringList known;
    for (const PDeviceMode& mode : modes)
        known.append(u"\"%1\" (%2)"_qs.arg(QString::fromLatin1(mode.id), mode.name));
    if (known.isEmpty())
        return PDeviceProfilePlan::tr("none, because the camera has no modes");
    return PDeviceProfilePlan::tr("one of %1").arg(known.join(u", "_qs));
}

/// A name that is not one of this camera's, such as a choice of another model.
bool isForeignChoice(const QVariant& form, const QVariant& range) {
    return range.metaType() == QMetaType::fromType<PEnumeration>() &&
           (form.typeId() == QMetaType::QString || form.typeId() == QMetaType::QUuid);
}

bool isSetByProfiles(const PDeviceProperty& property) {
    return property.isSerializable() && property.type() != PCD::DevicePropertyType::Action;
}

bool isRegion(const PDeviceProperty& property) {
    return property.type() == PCD::DevicePropertyType::ScanArea;
}

QString reasonToIgnore(const PDeviceProperty& property) {
    return property.type() == PCD::DevicePropertyType::Action
               ? PDeviceProfilePlan::tr("it is an action, which a profile never runs")
               : PDeviceProfilePlan::tr("profiles do not hold this property");
}

/// The value in the file, written so that it differs from the expected type: "12" is not 12.
QString toText(const QVariant& form) {
    switch (form.typeId()) {
    case QMetaType::QString:
        return PDeviceProfilePlan::tr("the text \"%1\"")
            .arg(PPropertyText::shortened(form.toString()));
    case QMetaType::Double:
        return PDeviceProfilePlan::tr("%1 with a decimal point").arg(form.toDouble());
    case QMetaType::QByteArray:
        return PDeviceProfilePlan::tr("these bytes");
    case QMetaType::QVariantMap:
        return PDeviceProfilePlan::tr("these fields");
    default:
        return PPropertyText::ofValue(form, QVariant());
    }
}

QString cannotBe(const QString& value, const QString& expected) {
    return PDeviceProfilePlan::tr("cannot be %1: expected %2").arg(value, expected);
}

/// What is expected, worded for files, in which the fields of a value are together.
QString expectation(const PDeviceProperty& property, const QVariant& range) {
    const QStringList fields = PCompositeFields::storedNames(property.valueInner());
    return fields.isEmpty() ? PPropertyCheck::expectation(property, range)
                            : PDeviceProfilePlan::tr("the fields %1").arg(fields.join(u", "_qs));
}

bool isOfFields(const QVariant& form, const QVariant& current) {
    return form.typeId() == QMetaType::QVariantMap && PCompositeFields::isComposite(current);
}

/// The form without the fields that profiles do not contain.
QVariant storedPart(const QVariant& form, const QVariant& current) {
    if (!isOfFields(form, current))
        return form;
    QVariantMap stored;
    const QVariantMap fields = form.toMap();
    for (const QString& name : PCompositeFields::storedNames(current)) {
        if (fields.contains(name))
            stored.insert(name, fields.value(name));
    }
    return stored;
}

QString alreadySo() {
    return PDeviceProfilePlan::tr("the camera already has this value, which is outside its range");
}

QString regionOfAnotherMode() {
    return PDeviceProfilePlan::tr("it is a region of another mode");
}

QString notReported() {
    return PDeviceProfilePlan::tr("the camera did not report it");
}

QString notReportedAgain() {
    return PDeviceProfilePlan::tr("the camera did not report whether it took it");
}

} // namespace

PDeviceProfilePlan::PDeviceProfilePlan(PDevice& device, Mode mode)
    : m_device(device)
    , m_modeUse(mode) {
}

PStatus PDeviceProfilePlan::make(const PDeviceProfile& profile) {
    m_profile = profile;
    m_steps.clear();
    m_report = {};
    m_mode.reset();
    m_currentMode = m_device.reportedMode();
    m_isSameModel = profile.model == m_device.model();
    const PQuietReading reading(properties());
    if (!reading.status().isOk() && !m_device.isAnswering())
        return PStatus::failure(tr("the camera no longer answers"));
    noteOrigin();
    PStatus status = planMode();
    if (status.isOk())
        status = planSettings();
    if (!status.isOk()) {
        // No part of a damaged profile may be sent.
        m_steps.clear();
        m_mode.reset();
    }
    return status;
}

/// The device's properties of which the profile has a value.
QList<PDeviceProperty*> PDeviceProfilePlan::properties() const {
    QList<PDeviceProperty*> all;
    m_device.supportProperties();
    for (const PDeviceProfile::Setting& setting : m_profile.settings) {
        PDeviceProperty* const property = m_device.getProperty(setting.id);
        if (property != nullptr && isSetByProfiles(*property))
            all.append(property);
    }
    return all;
}

void PDeviceProfilePlan::noteOrigin() {
    if (m_isSameModel && m_profile.serial == m_device.serial())
        return;
    m_report.note =
        tr("saved from another camera: %1, serial number %2; this one is "
           "%3, serial number %4")
            .arg(PPropertyText::shortened(m_profile.model),
                 PPropertyText::shortened(m_profile.serial), m_device.model(), m_device.serial());
}

PStatus PDeviceProfilePlan::planMode() {
    if (!m_profile.mode.form.isValid())
        return PStatus::Ok;
    const PReadWatch watch;
    const QList<PDeviceMode> modes = m_device.getSupportModes();
    if (watch.hasFailed()) {
        m_report.refused.append({m_profile.mode.id, tr("the camera did not report its modes")});
        return PStatus::Ok;
    }
    m_mode = modeWithId(modes, m_profile.mode.form.toString());
    if (m_mode)
        return PStatus::Ok;
    return refuse(m_profile.mode, cannotBe(toText(m_profile.mode.form), expectedMode(modes)));
}

PStatus PDeviceProfilePlan::planSettings() {
    QList<QByteArray> ids;
    for (const PDeviceProfile::Setting& setting : std::as_const(m_profile.settings)) {
        const PStatus status = planSetting(setting);
        if (!status.isOk())
            return status;
        ids.append(setting.id);
    }
    for (const PDeviceProperty* property : m_device.supportProperties()) {
        if (isSetByProfiles(*property) && !ids.contains(property->id()))
            m_report.missing.append(property->id());
    }
    sortSteps();
    return PStatus::Ok;
}

PStatus PDeviceProfilePlan::planSetting(const PDeviceProfile::Setting& setting) {
    PDeviceProperty* const property = m_device.getProperty(setting.id);
    if (property == nullptr) {
        m_report.refused.append({setting.id, tr("the camera has no such property")});
        return PStatus::Ok;
    }
    if (!isSetByProfiles(*property)) {
        m_report.ignored.append({setting.id, reasonToIgnore(*property)});
        return PStatus::Ok;
    }
    if (property->isUnread()) {
        m_report.refused.append({setting.id, notReported()});
        return PStatus::Ok;
    }
    if (isRegion(*property) && hasLostMode()) {
        m_report.ignored.append({setting.id, regionOfAnotherMode()});
        return PStatus::Ok;
    }
    return planValue(setting, *property);
}

PStatus PDeviceProfilePlan::planValue(const PDeviceProfile::Setting& setting,
                                      PDeviceProperty& property) {
    const QVariant range = rangeInMode(property);
    const QVariant current = property.valueInner();
    const qsizetype refusedBefore = m_report.refused.size();
    const PStatus fields =
        isOfFields(setting.form, current) ? checkFields(setting, current) : PStatus(PStatus::Ok);
    if (!fields.isOk() || m_report.refused.size() > refusedBefore)
        return fields;
    const QVariant value =
        PPropertyEncoding::fromForm(storedPart(setting.form, current), current, range);
    if (value.isValid() && PPropertyCheck::check(property, value, range).isOk()) {
        m_steps.append({&property, value});
        return PStatus::Ok;
    }
    // A camera without colour reports a tint of 0, which is outside the range, and it is saved like
    // that.
    const bool staysInForce = range == property.rangeInner();
    if (staysInForce && PPropertyEncoding::isSame(value, property.valueInner(), range)) {
        m_report.ignored.append({setting.id, alreadySo()});
        return PStatus::Ok;
    }
    const QString reason = cannotBe(toText(setting.form), expectation(property, range));
    return value.isValid() || isForeignChoice(setting.form, range) ? refuse(setting, reason)
                                                                   : damage(setting, reason);
}

/// Field by field, so that the message names the wrong field and its line.
PStatus PDeviceProfilePlan::checkFields(const PDeviceProfile::Setting& setting,
                                        const QVariant& current) {
    const QVariantMap fields = setting.form.toMap();
    for (auto field = fields.begin(); field != fields.end(); ++field) {
        const QString& name = field.key();
        const PStatus status = checkField(
            {setting.id + '.' + name.toUtf8(), field.value(), setting.fieldPositions.value(name)},
            name, current);
        if (!status.isOk())
            return status;
    }
    for (const QString& name : PCompositeFields::storedNames(current)) {
        if (!fields.contains(name))
            m_report.missing.append(setting.id + '.' + name.toUtf8());
    }
    return PStatus::Ok;
}

PStatus PDeviceProfilePlan::checkField(const PDeviceProfile::Setting& field, const QString& name,
                                       const QVariant& current) {
    const QStringList stored = PCompositeFields::storedNames(current);
    if (!PCompositeFields::names(current).contains(name)) {
        return damage(field, cannotBe(toText(field.form),
                                      tr("one of the fields %1").arg(stored.join(u", "_qs))));
    }
    if (!stored.contains(name)) {
        m_report.ignored.append({field.id, tr("profiles do not hold this property")});
        return PStatus::Ok;
    }
    QVariant tried = current;
    if (PCompositeFields::assign(tried, name, field.form))
        return PStatus::Ok;
    const QString reason =
        cannotBe(toText(field.form), PCompositeFields::expectation(current, name));
    if (!PCompositeFields::isOfType(current, name, field.form))
        return damage(field, reason);
    // Ranges of fields come with a plugin's version, and the profile may be of another.
    m_report.refused.append({field.id, reason});
    return PStatus::Ok;
}

/// A camera of another model has other ranges, which is not an error. For the same model, it is an
/// error in the file.
PStatus PDeviceProfilePlan::refuse(const PDeviceProfile::Setting& setting, const QString& reason) {
    if (m_isSameModel)
        return damage(setting, reason);
    m_report.refused.append({setting.id, reason});
    return PStatus::Ok;
}

PStatus PDeviceProfilePlan::damage(const PDeviceProfile::Setting& setting,
                                   const QString& reason) const {
    const QString what = u"\"%1\" %2"_qs.arg(QString::fromUtf8(setting.id), reason);
    return PStatus::failure(m_profile.path.isEmpty()
                                ? what // it is not from a file
                                : u"\"%1\": %2: %3"_qs.arg(m_profile.path, setting.position, what));
}

void PDeviceProfilePlan::sortSteps() {
    // Within a kind, in the camera's order, whatever the order in the file.
    const QList<PDeviceProperty*> order = PDeviceProfileOrder::sorted(m_device.supportProperties());
    std::sort(m_steps.begin(), m_steps.end(), [&](const Step& a, const Step& b) {
        return order.indexOf(a.property) < order.indexOf(b.property);
    });
}

/// A region refers to the profile's mode, which may not be set yet.
QVariant PDeviceProfilePlan::rangeInMode(const PDeviceProperty& property) const {
    const QVariant range = property.rangeInner();
    if (range.metaType() != QMetaType::fromType<PScanAreaRange>() || !m_mode ||
        m_mode->id == m_currentMode.id)
        return range;
    auto area = range.value<PScanAreaRange>();
    area.bounds = QRect(0, 0, m_mode->width, m_mode->height);
    return QVariant::fromValue(area);
}

/// True if the profile is of another mode, which cannot be set.
bool PDeviceProfilePlan::hasLostMode() const {
    return m_profile.mode.form.isValid() && !m_mode &&
           m_profile.mode.form.toString() != QString::fromLatin1(m_currentMode.id);
}

bool PDeviceProfilePlan::isOtherMode() const {
    return m_profile.mode.form.isValid() &&
           m_profile.mode.form.toString() != QString::fromLatin1(m_device.reportedMode().id);
}

PDeviceProfileReport PDeviceProfilePlan::apply() {
    const bool isInMode = applyMode();
    for (const Step& step : std::as_const(m_steps)) {
        if (isRegion(*step.property) && !isInMode) {
            m_report.ignored.append({step.property->id(), regionOfAnotherMode()});
        } else {
            applyStep(step);
        }
    }
    m_steps.clear();
    return m_report;
}

/// True if the device is then in the profile's mode, or the profile has no mode.
bool PDeviceProfilePlan::applyMode() {
    if (m_modeUse == Mode::AsItIs || !m_mode || !isOtherMode())
        return !isOtherMode();
    const PStatus status = m_device.setMode(*m_mode);
    const PReadWatch watch;
    const PDeviceMode now = m_device.reportedMode();
    if (now.id == m_mode->id) {
        m_report.applied.append(m_profile.mode.id);
        return true;
    }
    const QString reason = watch.hasFailed()
                               ? notReportedAgain()
                               : tr("requested %1, the camera has %2").arg(m_mode->name, now.name);
    m_report.refused.append({m_profile.mode.id, status.isOk() ? reason : status.reason()});
    return false;
}

void PDeviceProfilePlan::applyStep(const Step& step) {
    PDeviceProperty& property = *step.property;
    const PPropertyCheck::Outcome outcome = PPropertyCheck::send(property, step.value);
    if (outcome == PPropertyCheck::Outcome::Taken) {
        m_report.applied.append(property.id());
        return;
    }
    const QVariant range = property.rangeInner();
    m_report.refused.append(
        {property.id(), outcome == PPropertyCheck::Outcome::Unread
                            ? notReportedAgain()
                            : tr("requested %1, the camera has %2")
                                  .arg(PPropertyText::ofValue(step.value, range),
                                       PPropertyText::ofValue(property.valueInner(), range))});
}
