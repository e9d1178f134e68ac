// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QList>
#include <QSet>
#include <QString>

class QVariant;

/// Keeps the open objects of a writer and the names used in each, whatever the format, and decides
/// what may be written. One thread at a time.
class PCD_EXPORT PNameScopes {
public:
    /// Objects may be nested this deep; readers refuse documents that go deeper.
    static constexpr qsizetype maxDepth = 64;

    /// Opens an object. Returns false if it must not be written, nor its content: its name is
    /// already used, it is nested too deep, or the enclosing object is not written.
    bool enter(const QString& name);
    /// Closes the innermost object. Returns true if its end must be written.
    bool leave();
    /// Uses a name for a value. Returns false if the value must not be written: see enter(), and
    /// the types listed at PAbstractWriter::writeValue().
    bool addValue(const QString& name, const QVariant& value);

    /// The number of open objects that are written.
    qsizetype depth() const { return m_open.size() - 1; }

private:
    QList<QSet<QString>> m_open{QSet<QString>{}};
    qsizetype m_dropped = 0; // open objects that are not written
};
