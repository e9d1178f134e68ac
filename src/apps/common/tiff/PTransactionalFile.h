// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/file/PUnnamedFile.h>

#include <PCore/PStatus.h>

#include <QByteArray>
#include <QCoreApplication>

#include <map>

/// A new file that grows in steps. Bytes beyond the last completed step go to the file at once;
/// bytes that overwrite older ones are held back until the step is complete. So a format whose old
/// bytes point to newer ones is valid at every moment, even if the program is killed. It has no
/// name until giveName(), see PUnnamedFile. One thread.
class PTransactionalFile {
    Q_DECLARE_TR_FUNCTIONS(PTransactionalFile)

public:
    PTransactionalFile() = default;
    /// Closes it as it was after the last step.
    ~PTransactionalFile();
    PTransactionalFile(const PTransactionalFile&) = delete;
    PTransactionalFile& operator=(const PTransactionalFile&) = delete;

    /// Creates the file. Fails if anything with that name exists, or with the system's reason.
    PStatus create(const QString& path);
    bool isOpen() const { return m_descriptor >= 0; }
    /// Gives the file its name. Fails if anything has got that name meanwhile, or with the system's
    /// reason.
    PStatus giveName();
    /// Closes it as it was after the last step; without a name it is gone. Fails if the system
    /// reports only now that bytes could not be written, as for files on other machines, or if
    /// another program removed or truncated the file meanwhile.
    PStatus close();

    /// Reserves room on the disk for the next bytes at the end, so that the file system takes it
    /// one piece and not page by page. Nothing happens where it cannot: write() reports a full
    /// disk.
    void reserve(qint64 count);
    /// False once anything could not be written, or another program has truncated the file; after
    /// that every write is refused until rollBack(). Never throws.
    bool write(qint64 offset, const void* bytes, qint64 count);
    /// Reads what would be in the file if the step were complete. Returns the number of bytes,
    /// which is smaller at the end, or -1.
    qint64 read(qint64 offset, void* bytes, qint64 count) const;
    /// The size in bytes, including everything written so far.
    qint64 size() const { return m_size; }

    /// Completes the step. False, with the step undone, if that or an earlier write failed.
    bool commit();
    /// Undoes everything since the last step.
    void rollBack();

    /// The reason for the last failed write or commit().
    const QString& errorString() const { return m_error; }

private:
    bool holdBack(qint64 offset, const char* bytes, qint64 count);
    bool writeNow(qint64 offset, const char* bytes, qint64 count);
    bool fail(const QString& reason);
    bool isTruncated() const;
    QString damageByOthers() const;

    PUnnamedFile m_name;
    int m_descriptor = -1;
    qint64 m_size = 0;
    qint64 m_sizeOnDisk = 0; ///< at least, unless another program truncates it
    qint64 m_wholeSize = 0;  ///< at the end of the last step
    std::map<qint64, QByteArray> m_heldBack;
    bool m_failed = false;
    QString m_error;
};
