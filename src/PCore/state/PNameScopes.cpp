// SPDX-License-Identifier: MIT
#include <PCore/state/PNameScopes.h>

#include <QVariant>

#include <cmath>

namespace {

bool isWritable(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::QString:
    case QMetaType::QByteArray:
    case QMetaType::QRect:
    case QMetaType::QUuid:
        return true;
    case QMetaType::Double:
        return std::isfinite(value.toDouble());
    default:
        return false;
    }
}

bool insertNew(QSet<QString>& names, const QString& name) {
    const qsizetype before = names.size();
    names.insert(name);
    return names.size() > before;
}

} // namespace

bool PNameScopes::enter(const QString& name) {
    if (m_dropped > 0 || depth() == maxDepth || !insertNew(m_open.last(), name)) {
        ++m_dropped;
        return false;
    }
    m_open.append(QSet<QString>{});
    return true;
}

bool PNameScopes::leave() {
    if (m_dropped > 0) {
        --m_dropped;
        return false;
    }
    if (depth() == 0)
        return false;
    m_open.removeLast();
    return true;
}

bool PNameScopes::addValue(const QString& name, const QVariant& value) {
    return m_dropped == 0 && isWritable(value) && insertNew(m_open.last(), name);
}
