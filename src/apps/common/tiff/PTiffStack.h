// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/metadata/PPictureTags.h>
#include <apps/common/tiff/PTiffStream.h>
#include <apps/common/tiff/PTransactionalFile.h>

#include <PCore/PStatus.h>

#include <QCoreApplication>
#include <QImage>

#include <vector>

/// A new TIFF file with many pictures, one after the other, uncompressed, 8 bits per sample, grey
/// or RGB. At every moment, even if the program is killed or the disk is full, ordinary readers can
/// open the file, and it contains the pictures for which append() has returned; before the first
/// there is no file of that name. One thread.
class PTiffStack {
    Q_DECLARE_TR_FUNCTIONS(PTiffStack)

public:
    /// The size that the file may reach, which decides its format.
    enum class Size {
        UpTo4Gb,   ///< classic TIFF, which everything reads
        Unlimited, ///< BigTIFF
    };

    PTiffStack()
        : m_stream(m_file) {}

    /// Creates the file, which gets its name with the first picture. Fails with the reason:
    /// something with that name exists, …
    PStatus create(const QString& path, Size size);
    bool isOpen() const { return m_file.isOpen(); }

    /// Adds a picture with a text (UTF-8) in its tag ImageDescription, and these tags. Grayscale8
    /// becomes grey, all other formats RGB. On failure, with the reason, the file is as before and
    /// accepts no more pictures.
    PStatus append(const QImage& picture, const QByteArray& description,
                   const PPictureTags& tags = {});

    /// Overwrites a part of the first picture's text in place. Fails if it does not fit.
    PStatus overwriteDescription(qsizetype position, const QByteArray& bytes);
    /// Replaces the first picture's text by another one of any length. On failure the file is as
    /// before.
    PStatus replaceDescription(const QByteArray& description);

    /// Closes the file; without a picture there is none. Fails with the reason if the system
    /// reports only now that it is incomplete, or if readers no longer find every picture in it.
    PStatus close();
    /// After close(): how many pictures readers do not find.
    quint64 missing() const { return m_missing; }

private:
    /// The file as libtiff sees it.
    class Stream : public PTiffStream {
    public:
        explicit Stream(PTransactionalFile& file)
            : m_file(file) {}

        /// How often libtiff may read from now on. It follows the directories of the file, which
        /// another program can make a ring.
        void limitReads(quint64 count) { m_readsLeft = count; }

    protected:
        qint64 read(qint64 offset, void* bytes, qint64 count) noexcept override;
        bool write(qint64 offset, const void* bytes, qint64 count) noexcept override;
        qint64 size() const noexcept override { return m_file.size(); }

    private:
        PTransactionalFile& m_file;
        quint64 m_readsLeft = 0;
    };

    void beginStep();
    PStatus finishStep(bool done);
    PStatus finishPicture(bool done);
    bool writePicture(const QImage& picture, const QByteArray& description,
                      const PPictureTags& pictureTags);
    void findDescription(qint64 directory, const QByteArray& description);

    PTransactionalFile m_file;
    Stream m_stream;
    PTiffStream::Handle m_tiff;
    std::vector<uchar> m_rows; ///< of one strip
    quint64 m_pictures = 0;
    quint64 m_missing = 0;
    qint64 m_descriptionOffset = 0;
    qsizetype m_descriptionSize = 0; ///< 0 before the first picture
};
