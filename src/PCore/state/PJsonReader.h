// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>
#include <PCore/PStatus.h>
#include <PCore/state/PAbstractReader.h>

#include <memory>

/// Reads the JSON of a PJsonWriter.
class PCD_EXPORT PJsonReader : public PAbstractReader {
public:
    PJsonReader();
    ~PJsonReader() override;

    /// Reads a document. On failure the reason names the line and the error (not JSON, a duplicate
    /// name in an object, a value of a type that is never written, nested more than 64 deep, larger
    /// than 64 MiB), and the reader is empty.
    PStatus setDocument(const QByteArray& json);

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
