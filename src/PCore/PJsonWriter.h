// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PAbstractWriter.h>
#include <PCore/PNameScopes.h>

#include <QByteArray>

/// Writes JSON that people can read and compare: one value a line, in the order of writing. A
/// number with a point or an exponent is a double, one without is an int. What JSON has no type for
/// is an object whose one name says the type: {"$int64": "5"}, {"$bytes": "base64"}, {"$rect": [x,
/// y, width, height]}, {"$uuid": "{…}"}; null text and bytes are {"$string": null}, {"$bytes":
/// null}. A name of the caller's own that starts with $ is written with another $ before it.
class PJsonWriter : public PAbstractWriter {
public:
    void beginObject(const QString& name) override;
    void endObject() override;
    bool writeValue(const QString& name, const QVariant& value) override;

    /// The whole document, UTF-8, closing what is still open. The writer can go on afterwards.
    QByteArray document() const;

private:
    void startEntry(const QString& name, qsizetype depth);

    PNameScopes m_scopes;
    QByteArray m_text{"{"};
    bool m_objectIsEmpty = true; // the one that is open
};
