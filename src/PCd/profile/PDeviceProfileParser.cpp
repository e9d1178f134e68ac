// SPDX-License-Identifier: MIT
#include <PCd/profile/PDeviceProfileParser.h>

#include <PCd/property/value/PPropertyEncoding.h>
#include <PCd/property/value/PPropertyText.h>

#include <PCore/state/PAbstractReader.h>

namespace {

/// An error and its position; thrown and caught in this file.
struct Fault {
    QString position;
    QString what;
};

QString quoted(const QString& name) {
    return u'"' + PPropertyText::shortened(name) + u'"';
}

class Walker {
public:
    Walker(PAbstractReader& reader, PDeviceProfile& profile)
        : m_reader(reader)
        , m_profile(profile) {}

    void document() {
        // First, so that a file of another format is reported as such, not by a detail.
        expectHeader();
        expectNames({PDeviceProfileParser::formatKey(), PDeviceProfileParser::versionKey(),
                     PDeviceProfileParser::cameraKey()});
        enter(PDeviceProfileParser::cameraKey());
        camera();
        leave();
    }

private:
    void expectHeader() {
        const QString format = PDeviceProfileParser::formatKey();
        const QString name = PDeviceProfileParser::formatName();
        if (!PPropertyEncoding::areEqual(m_reader.readValue(format), name)) {
            throw Fault{findPlace(format), u"not a camera profile: expected %1: %2"_qs.arg(
                                               quoted(format), quoted(name))};
        }
        const QString version = PDeviceProfileParser::versionKey();
        if (!PPropertyEncoding::areEqual(m_reader.readValue(version),
                                         PDeviceProfileParser::version)) {
            throw Fault{
                findPlace(version),
                u"another version of the format: expected "
                "%1: %2"_qs.arg(quoted(version), QString::number(PDeviceProfileParser::version))};
        }
    }

    void camera() {
        const QString model = u"model"_qs;
        const QString serial = u"serial"_qs;
        const QString mode = u"mode"_qs;
        const QString properties = u"properties"_qs;
        expectNames({model, serial, mode, properties});
        m_profile.model = text(model);
        m_profile.serial = text(serial);
        if (names().contains(mode))
            m_profile.mode = {mode.toLatin1(), text(mode), m_reader.position(mode)};
        enter(properties);
        for (const QString& id : names())
            property(id);
        leave();
    }

    void property(const QString& id) {
        const QString value = u"value"_qs;
        enter(id);
        expectNames({value});
        PDeviceProfile::Setting setting{id.toUtf8(), m_reader.readValue(value),
                                        m_reader.position(value)};
        if (m_reader.objectNames().contains(value))
            fields(value, setting);
        if (setting.form.isValid())
            m_profile.settings.append(setting);
        leave();
    }

    /// The fields, by name, of a value that is an object.
    void fields(const QString& value, PDeviceProfile::Setting& setting) {
        enter(value);
        QVariantMap form;
        for (const QString& name : names()) {
            if (m_reader.objectNames().contains(name))
                throw Fault{findPlace(name), u"an object where a value was expected"_qs};
            form.insert(name, m_reader.readValue(name));
            setting.fieldPositions.insert(name, m_reader.position(name));
        }
        setting.form = form;
        leave();
    }

    QStringList names() const { return m_reader.valueNames() + m_reader.objectNames(); }

    /// Unknown names are errors: ignoring them would lose settings without a message.
    void expectNames(const QStringList& expected) const {
        for (const QString& name : names()) {
            if (!expected.contains(name))
                throw Fault{findPlace(name), u"%1 does not belong here: expected %2"_qs.arg(
                                                 quoted(name), expected.join(u", "_qs))};
        }
    }

    QString text(const QString& name) const {
        const QVariant value = m_reader.readValue(name);
        if (value.typeId() != QMetaType::QString)
            throw Fault{findPlace(name), u"expected %1: a string"_qs.arg(quoted(name))};
        return value.toString();
    }

    void enter(const QString& name) {
        const QString place = findPlace(name);
        if (!m_reader.beginObject(name))
            throw Fault{place, u"expected %1: an object"_qs.arg(quoted(name))};
        m_around = place;
    }

    void leave() { m_reader.endObject(); }

    /// The position at which to report a missing entry: the beginning of the object that should
    /// contain it.
    QString findPlace(const QString& name) const {
        const QString place = m_reader.position(name);
        return place.isEmpty() ? m_around : place;
    }

    PAbstractReader& m_reader;
    PDeviceProfile& m_profile;
    QString m_around; // none at the root
};

} // namespace

PStatus PDeviceProfileParser::parse(PAbstractReader& reader, PDeviceProfile& profile) {
    PDeviceProfile parsed;
    try {
        Walker(reader, parsed).document();
    } catch (const Fault& fault) {
        return PStatus::failure(fault.position.isEmpty() ? fault.what
                                                         : fault.position + u": "_qs + fault.what);
    }
    profile = parsed;
    return PStatus::Ok;
}
