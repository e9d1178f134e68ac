// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <vector>

/// The content of a document that was read, and the reader's current object: the part of
/// PAbstractReader that does not depend on the format. One thread at a time.
class PValueTree {
public:
    struct Object;

    /// A named value or object, and its position in the source.
    struct Entry {
        QString name;
        qsizetype position = 0;
        QVariant value;
        std::unique_ptr<Object> object; // null for a value
    };

    /// Entries in the order of the document.
    struct Object {
        std::vector<Entry> entries;
        QHash<QString, std::size_t> index;

        /// Appends an entry and returns it, to be filled; null if the name is already used. Valid
        /// until the next add() to this object.
        Entry* add(const QString& name, qsizetype position);
        const Entry* find(const QString& name) const;
        QStringList names(bool ofObjects) const;
    };

    /// Replaces the content and goes to the root.
    void setRoot(Object&& root);

    /// Enters an object of the current one; false, and it stays where it is, if there is none of
    /// this name.
    bool enter(const QString& name);
    /// Goes back to the enclosing object; does nothing at the root.
    void leave();
    /// The current object.
    const Object& current() const { return m_path.empty() ? m_root : *m_path.back(); }
    QVariant value(const QString& name) const;

private:
    Object m_root;
    std::vector<const Object*> m_path;
};
