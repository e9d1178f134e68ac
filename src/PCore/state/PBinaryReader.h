// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>
#include <PCore/PStatus.h>
#include <PCore/state/PAbstractReader.h>

#include <memory>

/// Reads the binary format that PBinaryWriter writes.
class PCD_EXPORT PBinaryReader : public PAbstractReader {
public:
    PBinaryReader();
    ~PBinaryReader() override;

    /// Reads a document. On failure the reason names the byte and the error (not this format,
    /// an unknown version, truncated, checksum), and the reader is empty.
    PStatus setDocument(const QByteArray& bytes);

    bool beginObject(const QString& name) override;
    void endObject() override;
    QStringList objectNames() const override;
    QStringList valueNames() const override;
    QVariant readValue(const QString& name) const override;
    QString position(const QString& name) const override;

private:
    class Private;
    std::unique_ptr<Private> d;
};
