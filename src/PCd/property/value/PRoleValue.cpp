// SPDX-License-Identifier: MIT
#include <PCd/property/value/PRoleValue.h>

#include <PCd/property/value/PCompositeFields.h>

#include <algorithm>

namespace {

bool isValueOf(const PRoleBinding& binding, PRole role) {
    return binding.role == role && binding.method.isEmpty();
}

QVariant read(const QVariant& value, const PRoleBinding& binding) {
    return binding.isPlain() ? value
                             : PCompositeFields::read(value, QString::fromLatin1(binding.field));
}

} // namespace

bool PRoleValue::has(PRole role) const {
    return std::any_of(bindings.begin(), bindings.end(),
                       [&](const PRoleBinding& binding) { return isValueOf(binding, role); });
}

bool PRoleValue::hasPlain(PRole role) const {
    return std::any_of(bindings.begin(), bindings.end(), [&](const PRoleBinding& binding) {
        return binding.role == role && binding.isPlain();
    });
}

QVariant PRoleValue::part(PRole role) const {
    const auto found =
        std::find_if(bindings.begin(), bindings.end(),
                     [&](const PRoleBinding& binding) { return isValueOf(binding, role); });
    return found == bindings.end() ? QVariant() : read(value, *found);
}

std::optional<double> PRoleValue::number(PRole role) const {
    std::optional<double> sum;
    for (const PRoleBinding& binding : bindings) {
        if (!isValueOf(binding, role))
            continue;
        bool isNumber = false;
        const double part = read(value, binding).toDouble(&isNumber);
        if (!isNumber)
            return std::nullopt;
        sum = sum.value_or(0) + binding.toRole(part);
    }
    return sum;
}
