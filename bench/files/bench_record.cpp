// SPDX-License-Identifier: MIT
#include <apps/common/ome/POmeStackWriter.h>
#include <apps/common/zarr/PZarrWriter.h>

#include <figure/FigureProgram.h>
#include <figure/Stopwatch.h>
#include <stub/SensorNoise.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <memory>

// A recording of 20-megapixel colour frames: the cost of writing an OME-TIFF or OME-Zarr, compared
// with writing the same number of bytes from memory to a plain file; a pyramid, with the same
// recording without it. All end in the system's cache.

namespace {

constexpr int frames = 8;
const PImageHeader header(5440, 3648, PDIP::ColorFormat::Bgr);

/// In the folder the program is run from: the one for temporary files may be in memory.
QString newFile() {
    static const QTemporaryDir folder(u"bench_record-XXXXXX"_qs);
    return folder.isValid() ? folder.filePath(u"run"_qs) : QString();
}

void remove(const QString& path) {
    if (QFileInfo(path).isDir())
        QDir(path).removeRecursively();
    else
        QFile::remove(path);
}

PDeviceFrame cameraFrame() {
    PDeviceFrame frame;
    if (!frame.image.create(header))
        throw std::bad_alloc();
    const PDIP::ImageRawData data = frame.image.rawData(PDIP::AccessMode::Write);
    SensorNoise::fill(data.data(), data.size());
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

bool writeFolder(const QString& path, const PDeviceFrame& frame, bool pyramid) {
    PZarrWriter writer({path, {}, {}, std::nullopt, std::nullopt, pyramid});
    for (int i = 1; i <= frames; ++i) {
        if (!writer.write(frame, quint64(i)).isOk())
            return false;
    }
    return writer.finish({}).isOk();
}

bool writeChunks(const QString& path, const PDeviceFrame& frame) {
    return writeFolder(path, frame, false);
}

bool writePyramid(const QString& path, const PDeviceFrame& frame) {
    return writeFolder(path, frame, true);
}

using Write = bool (*)(const QString&, const PDeviceFrame&);

/// Milliseconds for a recording, without removing it.
double measure(Write write, const PDeviceFrame& frame) {
    const QString path = newFile();
    bool isWritten = false;
    const double cost = Stopwatch::processMs([&] { isWritten = write(path, frame); });
    remove(path);
    return isWritten ? cost : -1;
}

FigurePair prepare(Write write, Write reference) {
    const PDeviceFrame frame = cameraFrame();
    return {[=] { return measure(write, frame); }, [=] { return measure(reference, frame); }};
}

} // namespace

int main(int argc, char** argv) {
    const char* const plainly = "write() of the same bytes";
    FigureProgram::add(
        {"recording/20MP-24bit", "8 frames as OME-TIFF, processor time", plainly, "ms", 1.1},
        [] { return prepare(writeStack, writePlainly); });
    FigureProgram::add(
        {"recording/20MP-24bit-zarr", "8 frames as OME-Zarr, processor time", plainly, "ms", 6.0},
        [] { return prepare(writeChunks, writePlainly); });
    FigureProgram::add({"recording/20MP-24bit-pyramid", "the same with a pyramid, processor time",
                        "the same without one", "ms", 3.0, Figure::Bound::Ratio, 9},
                       [] { return prepare(writePyramid, writeChunks); });
    return FigureProgram::run(argc, argv);
}
