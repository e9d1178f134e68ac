// SPDX-License-Identifier: MIT
#include <PCd/PEnumeration.h>

#include <algorithm>

void PEnumeration::addItem(QUuid id, const QString& name, const QString& title,
                           const QByteArray& data) {
    m_items.append({id, name, title, data});
}

PEnumerationItem PEnumeration::getItem(QUuid id) const {
    const auto found = std::find_if(m_items.begin(), m_items.end(),
                                    [&](const PEnumerationItem& item) { return item.id == id; });
    return found == m_items.end() ? PEnumerationItem{} : *found;
}

QDataStream& operator<<(QDataStream& out, const PEnumeration& enumeration) {
    out << quint32(enumeration.items().size());
    for (const PEnumerationItem& item : enumeration.items())
        out << item.id << item.name << item.title << item.data;
    return out;
}

QDataStream& operator>>(QDataStream& in, PEnumeration& enumeration) {
    enumeration = PEnumeration();
    quint32 count = 0;
    in >> count;
    // Memory is not reserved from the count, which may be damaged: reading then stops at the end of
    // the data.
    PEnumeration read;
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        PEnumerationItem item;
        in >> item.id >> item.name >> item.title >> item.data;
        read.addItem(item.id, item.name, item.title, item.data);
    }
    if (in.status() == QDataStream::Ok)
        enumeration = read;
    return in;
}
