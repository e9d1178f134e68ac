// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>
#include <PCore/state/PAbstractWriter.h>
#include <PCore/state/PNameScopes.h>

#include <QByteArray>

/// Writes the compact binary format: a magic number, a version, the records, and a checksum
/// (CRC-32) of all of it, so that a truncated or changed file is detected.
class PCD_EXPORT PBinaryWriter : public PAbstractWriter {
public:
    void beginObject(const QString& name) override;
    void endObject() override;
    bool writeValue(const QString& name, const QVariant& value) override;

    /// The whole document, with open objects closed. Writing can continue afterwards.
    QByteArray document() const;

private:
    PNameScopes m_scopes;
    QByteArray m_records;
};
