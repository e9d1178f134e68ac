// SPDX-License-Identifier: MIT
#include <PCd/device/PDeviceIdClaim.h>

#include <mutex>
#include <set>

namespace {

struct Claims {
    std::mutex mutex; // ids are first read on the main thread or a frame thread
    std::set<QByteArray> taken;
};

Claims& claims() {
    // Never destroyed: devices in static variables may release their claims after this file's
    // static variables are destroyed.
    static Claims* const all = new Claims;
    return *all;
}

QByteArray freeVariant(const std::set<QByteArray>& taken, const QByteArray& wanted) {
    QByteArray id = wanted;
    for (int number = 2; taken.count(id) != 0; ++number)
        id = wanted + '#' + QByteArray::number(number);
    return id;
}

} // namespace

PDeviceIdClaim::~PDeviceIdClaim() {
    release();
}

QByteArray PDeviceIdClaim::id(const std::function<QByteArray()>& wanted) {
    const std::lock_guard lock(claims().mutex);
    if (!m_id) {
        m_id = freeVariant(claims().taken, wanted());
        claims().taken.insert(*m_id);
        m_held = true;
    }
    return *m_id;
}

void PDeviceIdClaim::release() {
    const std::lock_guard lock(claims().mutex);
    if (m_held)
        claims().taken.erase(*m_id);
    m_held = false;
}
