// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>
#include <PCore/state/PAbstractWriter.h>
#include <PCore/state/PNameScopes.h>

#include <QByteArray>

/// Writes JSON that users can read and compare: one value per line, in the order of writing. A
/// number with a point or an exponent is a double, one without is an int. Types that JSON lacks are
/// objects whose only name is the type: {"$int64": "5"}, {"$bytes": "base64"}, {"$rect": [x, y,
/// width, height]}, {"$uuid": "{…}"}; null text and bytes are {"$string": null}, {"$bytes": null}.
/// A caller's name that starts with $ is written with another $ before it.
class PCD_EXPORT PJsonWriter : public PAbstractWriter {
public:
    void beginObject(const QString& name) override;
    void endObject() override;
    bool writeValue(const QString& name, const QVariant& value) override;

    /// The whole document in UTF-8, with open objects closed. Writing can continue afterwards.
    QByteArray document() const;

private:
    void startEntry(const QString& name, qsizetype depth);

    PNameScopes m_scopes;
    QByteArray m_text{"{"};
    bool m_objectIsEmpty = true; // the innermost open one
};
