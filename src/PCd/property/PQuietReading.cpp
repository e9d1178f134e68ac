// SPDX-License-Identifier: MIT
#include <PCd/property/PQuietReading.h>

#include <PCd/property/PReadWatch.h>

#include <QStringList>

PQuietReading::PQuietReading(const QList<PDeviceProperty*>& properties) {
    m_known.reserve(std::size_t(properties.size()));
    for (PDeviceProperty* property : properties) {
        const PReadWatch watch;
        const auto [value, range] = property->readFromDevice();
        const bool hasFailed = watch.hasFailed();
        m_known.push_back({property, property->cached(), property->m_range, hasFailed});
        property->restore({value, QVariant(), hasFailed});
        property->m_range = range;
    }
}

PStatus PQuietReading::status() const {
    QStringList failed;
    for (const Known& known : m_known) {
        if (known.hasFailed && !failed.contains(QString::fromLatin1(known.property->id())))
            failed.append(QString::fromLatin1(known.property->id()));
    }
    return failed.isEmpty()
               ? PStatus(PStatus::Ok)
               : PStatus::failure(tr("the camera did not report %1").arg(failed.join(u", "_qs)));
}

PQuietReading::~PQuietReading() {
    // In reverse, so that a property that was listed twice gets its first copy back.
    for (auto known = m_known.rbegin(); known != m_known.rend(); ++known) {
        known->property->restore(known->cached);
        known->property->m_range = std::move(known->range);
    }
}
