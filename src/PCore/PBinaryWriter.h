// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PAbstractWriter.h>
#include <PCore/PNameScopes.h>

#include <QByteArray>

/// Writes the compact binary form: a magic number, a version, the records, and a checksum (CRC-32)
/// over all of it, so that a truncated or changed file is known as such.
class PBinaryWriter : public PAbstractWriter {
public:
    void beginObject(const QString& name) override;
    void endObject() override;
    bool writeValue(const QString& name, const QVariant& value) override;

    /// The whole document, closing what is still open. The writer can go on afterwards.
    QByteArray document() const;

private:
    PNameScopes m_scopes;
    QByteArray m_records;
};
