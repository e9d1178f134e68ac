// SPDX-License-Identifier: MIT
#include <PCd/property/PQuietReading.h>

PQuietReading::PQuietReading(const QList<PDeviceProperty*>& properties) {
    m_known.reserve(std::size_t(properties.size()));
    for (PDeviceProperty* property : properties) {
        m_known.push_back({property, {property->m_value, property->m_range}});
        const auto [value, range] = property->readFromDevice();
        property->m_value = value;
        property->m_range = range;
    }
}

PQuietReading::~PQuietReading() {
    // In reverse, so that a property that was listed twice gets its first copy back.
    for (auto known = m_known.rbegin(); known != m_known.rend(); ++known) {
        known->property->m_value = std::move(known->copy.value);
        known->property->m_range = std::move(known->copy.range);
    }
}
