// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QByteArray>
#include <QDataStream>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QUuid>

/// One item of a PEnumeration.
struct PEnumerationItem {
    QUuid id;        ///< the value of the property when this item is chosen
    QString name;    ///< untranslated
    QString title;   ///< translated, for the user
    QByteArray data; ///< the value that the device uses

    friend bool operator==(const PEnumerationItem& a, const PEnumerationItem& b) {
        return a.id == b.id && a.name == b.name && a.title == b.title && a.data == b.data;
    }
};

/// An ordered list of named choices: the range of a choice property. A value type; any thread.
class PCD_EXPORT PEnumeration {
public:
    /// Appends an item. Ids may repeat; the first item with an id is used.
    void addItem(QUuid id, const QString& name, const QString& title, const QByteArray& data);
    /// The first item with this id, or an empty item.
    PEnumerationItem getItem(QUuid id) const;
    const QList<PEnumerationItem>& items() const { return m_items; }

    friend bool operator==(const PEnumeration& a, const PEnumeration& b) {
        return a.m_items == b.m_items;
    }
    friend bool operator!=(const PEnumeration& a, const PEnumeration& b) { return !(a == b); }

private:
    QList<PEnumerationItem> m_items;
};

/// QDataStream format: the number of items as quint32, then id, name, title and data of each. If
/// the data ends early, the status of the QDataStream is set and the enumeration is empty.
PCD_EXPORT QDataStream& operator<<(QDataStream& out, const PEnumeration& enumeration);
PCD_EXPORT QDataStream& operator>>(QDataStream& in, PEnumeration& enumeration);

Q_DECLARE_METATYPE(PEnumeration)
