// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTiffStack.h>

#include <apps/common/tiff/PPackedRows.h>
#include <apps/common/tiff/PTiffChain.h>
#include <apps/common/tiff/PTiffStrips.h>
#include <apps/common/tiff/PTiffTags.h>

#include <new>

namespace {

using AtClose = PTiffStream::AtClose;

} // namespace

qint64 PTiffStack::Stream::read(qint64 offset, void* bytes, qint64 count) noexcept {
    if (m_readsLeft == 0)
        return -1;
    --m_readsLeft;
    return m_file.read(offset, bytes, count);
}

bool PTiffStack::Stream::write(qint64 offset, const void* bytes, qint64 count) noexcept {
    return m_file.write(offset, bytes, count);
}

PStatus PTiffStack::create(const QString& path, Size size) {
    const PStatus made = m_file.create(path);
    if (!made.isOk())
        return made;
    beginStep();
    m_tiff = m_stream.open(size == Size::Unlimited ? "w8l" : "wl", AtClose::Dropped);
    return finishStep(m_tiff != nullptr);
}

/// Far more reads than any step needs: two for each directory that is already there, and a few.
void PTiffStack::beginStep() {
    m_stream.limitReads(1000 + 4 * m_pictures);
}

/// Commits what libtiff has written as a step of the file, if libtiff succeeded.
PStatus PTiffStack::finishStep(bool done) {
    if (done && m_file.commit())
        return PStatus::Ok;
    // The reason, if the disk failed; libtiff has its own limits too.
    const QString reason = m_file.errorString();
    m_file.rollBack();
    return PStatus::failure(reason.isEmpty() ? tr("it is too large for the format or for memory")
                                             : reason);
}

PStatus PTiffStack::append(const QImage& picture, const QByteArray& description,
                           const PPictureTags& tags) {
    bool done = false;
    beginStep();
    try {
        done = m_tiff && writePicture(picture, description, tags);
    } catch (const std::bad_alloc&) {
        m_file.rollBack();
    }
    const PStatus status = finishPicture(done);
    // After a failed step libtiff and the file disagree about the end of the file.
    if (!status.isOk())
        m_tiff.reset();
    return status;
}

/// The file gets its name when it has a picture.
PStatus PTiffStack::finishPicture(bool done) {
    const PStatus status = finishStep(done);
    if (!status.isOk())
        return status;
    ++m_pictures;
    return m_pictures == 1 ? m_file.giveName() : status;
}

bool PTiffStack::writePicture(const QImage& picture, const QByteArray& description,
                              const PPictureTags& pictureTags) {
    if (picture.isNull())
        return false;
    const int samples = PPackedRows::sampleCount(picture);
    const PTiffTags tags{picture.width(), picture.height(), samples, PTiffStrips::rowCount(picture),
                         description,     pictureTags};
    m_file.reserve(qint64(picture.width()) * picture.height() * samples);
    if (!tags.writeTo(m_tiff.get()) || !PTiffStrips::write(m_tiff.get(), picture, m_rows))
        return false;
    const qint64 directory = m_file.size();
    if (TIFFWriteDirectory(m_tiff.get()) == 0)
        return false;
    if (m_descriptionSize == 0)
        findDescription(directory, description);
    return true;
}

/// Finds the text in the first directory, which has just been written.
void PTiffStack::findDescription(qint64 directory, const QByteArray& description) {
    QByteArray written(m_file.size() - directory, '\0');
    m_file.read(directory, written.data(), written.size());
    const qsizetype found = written.indexOf(description);
    m_descriptionOffset = directory + found;
    m_descriptionSize = found < 0 ? 0 : description.size();
}

PStatus PTiffStack::overwriteDescription(qsizetype position, const QByteArray& bytes) {
    if (position < 0 || position + bytes.size() > m_descriptionSize)
        return PStatus::failure(u"the description has no such position"_qs);
    return finishStep(
        m_file.write(m_descriptionOffset + position, bytes.constData(), bytes.size()));
}

PStatus PTiffStack::close() {
    m_tiff.reset();
    const quint64 found = isOpen() ? PTiffChain::count(m_file, m_pictures) : m_pictures;
    m_missing = m_pictures - found;
    const PStatus closed = m_file.close();
    if (!closed.isOk() || m_missing == 0)
        return closed;
    return PStatus::failure(
        tr("the file was changed while it was being written: it has %1 of %2 pictures")
            .arg(QString::number(found), QString::number(m_pictures)));
}

PStatus PTiffStack::replaceDescription(const QByteArray& description) {
    m_tiff.reset();
    beginStep();
    const PTiffStream::Handle handle = m_stream.open("r+", AtClose::Dropped);
    const PStatus status =
        finishStep(handle && TIFFSetDirectory(handle.get(), 0) &&
                   TIFFSetField(handle.get(), TIFFTAG_IMAGEDESCRIPTION, description.constData()) &&
                   TIFFRewriteDirectory(handle.get()));
    if (status.isOk())
        m_descriptionSize = 0; // it has moved, and is final
    return status;
}
