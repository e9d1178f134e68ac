// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyRoles.h>

#include <PCore/state/PAbstractWriter.h>

#include <functional>

/// A property that does what functions say, at first the same as another one, which it owns.
class MutantProperty : public PDeviceProperty {
public:
    explicit MutantProperty(PDeviceProperty* inner)
        : PDeviceProperty(inner->id(), inner->title(), inner->type())
        , set([inner](const QVariant& value) { return inner->trySetValue(value); })
        , get([inner] { return inner->tryGetValue(); })
        , range([inner] { return inner->tryGetRange(); }) {
        inner->setParent(this);
        setDefaultValue(inner->defaultValue());
        PPropertyRoles::declare(*this, PPropertyRoles::of(*inner));
    }
    /// A reading with a constant value.
    MutantProperty(const QByteArray& id, const QString& title, PCD::DevicePropertyType type,
                   const QVariant& value)
        : PDeviceProperty(id, title, type)
        , set([](const QVariant&) { return false; })
        , get([value] { return value; })
        , range([] { return QVariant(); }) {
        setSerializable(false);
    }

    bool trySetValue(QVariant value) override { return set(value); }
    QVariant tryGetValue() override { return get(); }
    QVariant tryGetRange() override { return range(); }
    bool writeValueToStream(PAbstractWriter* writer) const override {
        return written.isValid() ? writer->writeValue(u"value"_qs, written)
                                 : PDeviceProperty::writeValueToStream(writer);
    }

    std::function<bool(const QVariant&)> set;
    std::function<QVariant()> get;
    std::function<QVariant()> range;
    QVariant written; ///< to files instead of the value, if valid
};
