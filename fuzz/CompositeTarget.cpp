// SPDX-License-Identifier: MIT
// A composite value as the bytes of its QDataStream operators, the form that older files have. The
// first byte of the input selects the type.
#include <FuzzSupport.h>

#include <PCd/PEnumeration.h>
#include <PCd/PScanAreaRange.h>
#include <PCd/property/value/PCompositeFields.h>
#include <PCd/property/value/PPropertyEncoding.h>
#include <PCd/property/value/PPropertyText.h>
#include <PCdPlugins/PTDevice/ExtendedExposureData.h>
#include <PCdPlugins/PTDevice/FANDATA.h>
#include <PCdPlugins/PTDevice/TECDATA.h>

#include <QDataStream>

namespace {

QVariant currentValue(std::uint8_t kind) {
    switch (kind % 5) {
    case 0:
        return QVariant::fromValue(ExtendedExposureData());
    case 1:
        return QVariant::fromValue(FANDATA());
    case 2:
        return QVariant::fromValue(TECDATA());
    case 3:
        return QVariant::fromValue(PEnumeration());
    default:
        return QVariant::fromValue(PScanAreaRange());
    }
}

/// Text and files hold a field to its range, so what was read must not be beyond it.
void requireInRange(const QVariant& value) {
    for (const QString& name : PCompositeFields::storedNames(value)) {
        QVariant same = value;
        Fuzz::require(PCompositeFields::assign(same, name, PCompositeFields::read(value, name)),
                      "a field that was read is within its range");
    }
}

void requireKept(const QVariant& value, const QVariant& current) {
    const QVariant form = PPropertyEncoding::toForm(value, QVariant());
    Fuzz::require(form.isValid(), "what was read has a form");
    const QVariant again = PPropertyEncoding::fromForm(form, current, QVariant());
    Fuzz::require(PPropertyEncoding::isSame(value, again, QVariant()),
                  "the form is read as the same value");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const QVariant current = currentValue(data[0]);
    const QByteArray bytes = Fuzz::toBytes(data + 1, size - 1);
    const QVariant value = PPropertyEncoding::fromForm(bytes, current, QVariant());
    if (!value.isValid())
        return 0;
    Fuzz::require(value.metaType() == current.metaType(), "the value has the property's type");
    PPropertyText::ofValue(value, QVariant());
    requireInRange(value);
    requireKept(value, current);
    return 0;
}
