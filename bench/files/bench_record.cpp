// SPDX-License-Identifier: MIT
#include <apps/common/ome/POmeStackWriter.h>

#include <figure/FigureProgram.h>
#include <figure/Stopwatch.h>

#include <QFile>
#include <QTemporaryDir>

#include <memory>

// A recording of 20-megapixel colour frames: the cost of writing an OME-TIFF, compared with writing
// the same number of bytes from memory to a plain file. Both end in the system's cache.

namespace {

constexpr int frames = 8;
const PImageHeader header(5440, 3648, PDIP::ColorFormat::Bgr);

/// In the folder the program is run from: the one for temporary files may be in memory.
QString newFile() {
    static const QTemporaryDir folder(u"bench_record-XXXXXX"_qs);
    return folder.isValid() ? folder.filePath(u"run.ome.tif"_qs) : QString();
}

PDeviceFrame cameraFrame() {
    PDeviceFrame frame;
    if (!frame.image.create(header))
        throw std::bad_alloc();
    const PDIP::ImageRawData data = frame.image.rawData(PDIP::AccessMode::Write);
    for (std::size_t i = 0; i < data.size(); ++i)
        data.data()[i] = static_cast<unsigned char>(i * 7);
    auto stamp = std::make_shared<PFrameStamp>();
    stamp->settings = std::make_shared<PDeviceSettings>();
    frame.stamp = std::move(stamp);
    return frame;
}

bool writePlainly(const QString& path, const PDeviceFrame& frame) {
    QFile file(path);
    if (!file.open(QIODevice::NewOnly | QIODevice::Unbuffered))
        return false;
    const PDIP::ImageRawData data = frame.image.rawData(PDIP::AccessMode::Read);
    const auto size = qint64(data.size());
    for (int i = 0; i < frames; ++i) {
        if (file.write(reinterpret_cast<const char*>(data.constData()), size) != size)
            return false;
    }
    return true;
}

bool writeStack(const QString& path, const PDeviceFrame& frame) {
    POmeStackWriter writer({path, {}, {}, frames, std::nullopt, std::nullopt});
    for (int i = 1; i <= frames; ++i) {
        if (!writer.write(frame, quint64(i)).isOk())
            return false;
    }
    return writer.finish({}).isOk();
}

using Write = bool (*)(const QString&, const PDeviceFrame&);

/// Milliseconds for a recording, without removing it.
double measure(Write write, const PDeviceFrame& frame) {
    const QString path = newFile();
    bool isWritten = false;
    const double cost = Stopwatch::processMs([&] { isWritten = write(path, frame); });
    QFile::remove(path);
    return isWritten ? cost : -1;
}

FigurePair prepare() {
    const PDeviceFrame frame = cameraFrame();
    return {[=] { return measure(writeStack, frame); },
            [=] { return measure(writePlainly, frame); }};
}

} // namespace

int main(int argc, char** argv) {
    FigureProgram::add({"recording/20MP-24bit", "8 frames as OME-TIFF, processor time",
                        "write() of the same bytes", "ms", 1.1},
                       prepare);
    return FigureProgram::run(argc, argv);
}
