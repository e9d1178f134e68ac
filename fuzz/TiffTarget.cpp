// SPDX-License-Identifier: MIT
// A recording whose file another program writes to. The input is pieces of it: two bytes of
// offset, a byte of length, and the bytes; a piece without bytes truncates the file. Then the text
// is replaced and the file closed, as at the end of every recording.
#include <FuzzSupport.h>

#include <apps/common/tiff/PTiffStack.h>

#include <QDir>
#include <QFile>

namespace {

/// Writes the pieces and returns what is left of the input, which becomes the new text.
QByteArray damage(QFile& file, QByteArray input) {
    for (int piece = 0; piece < 8 && input.size() > 3; ++piece) {
        const qint64 offset = uchar(input[0]) + 256 * uchar(input[1]);
        const qsizetype length = uchar(input[2]) % 16;
        if (length == 0)
            file.resize(offset);
        file.seek(offset % (file.size() + 1));
        file.write(input.mid(3, length));
        input = input.mid(3 + length);
    }
    file.flush();
    return input;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString path = QDir(Fuzz::folder()).filePath(u"stack.tif"_qs);
    QFile::remove(path);
    QImage picture(3, 2, size % 2 == 0 ? QImage::Format_Grayscale8 : QImage::Format_RGB888);
    picture.fill(Qt::gray);
    PTiffStack stack;
    const auto format = size % 4 < 2 ? PTiffStack::Size::UpTo4Gb : PTiffStack::Size::Unlimited;
    Fuzz::require(stack.create(path, format).isOk(), "a file can be created");
    for (int i = 0; i < 2; ++i)
        Fuzz::require(stack.append(picture, "A description").isOk(), "a picture can be added");
    QFile file(path);
    Fuzz::require(file.open(QIODevice::ReadWrite), "another program can open the file");
    // A copy, which ends with a zero byte, as libtiff wants it of a text.
    const QByteArray input(reinterpret_cast<const char*>(data), qsizetype(size));
    const QByteArray rest = damage(file, input);
    stack.overwriteDescription(2, rest.left(4));
    stack.append(picture, rest);
    stack.replaceDescription(rest);
    const PStatus closed = stack.close();
    Fuzz::require(closed.isOk() || !closed.reason().isEmpty(), "a failure has a reason");
    return 0;
}
