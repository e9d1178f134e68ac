// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QSet>
#include <QString>

class QVariant;

/// The objects a writer has open and the names it used in each, whatever the format: decides what
/// may be written. One thread at a time.
class PNameScopes {
public:
    /// Objects may be nested this deep; readers refuse documents that go deeper.
    static constexpr qsizetype maxDepth = 64;

    /// Opens an object. Returns false if it is not to be written, with all it will hold: its name
    /// was used before, it is nested too deep, or the object around it is not written.
    bool enter(const QString& name);
    /// Closes the innermost object. Returns true if its end is to be written.
    bool leave();
    /// Takes a name for a value. Returns false if the value is not to be written: see enter(), and
    /// the types of PAbstractWriter::writeValue().
    bool addValue(const QString& name, const QVariant& value);

    /// How many objects that are written are open now.
    qsizetype depth() const { return m_open.size() - 1; }

private:
    QList<QSet<QString>> m_open{QSet<QString>{}};
    qsizetype m_dropped = 0; // objects open that are not written
};
