// SPDX-License-Identifier: MIT
#include <apps/common/picture/PPictureFile.h>

#include <PDip/PImage.h>

#include <figure/FigureProgram.h>
#include <figure/Stopwatch.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <memory>
#include <stdexcept>
#include <utility>

// A still of 20 megapixels, as the simulated camera takes it: the processor time of saving it, of
// all threads and of the system.

namespace {

constexpr double largestPng = 1.2 * 27.7; // MB; 27.7 with zlib's default level and search

/// A still and the files that are made of it.
class Still {
public:
    Still() {
        const QString taken = m_folder.filePath(u"taken.tif"_qs);
        QProcess camera;
        camera.start(QCoreApplication::applicationDirPath() + u"/pcdctl"_qs,
                     {u"--sdk"_qs, u"sim"_qs, u"snap"_qs, u"-o"_qs, taken});
        if (!camera.waitForFinished(60'000) || camera.exitCode() != 0)
            throw std::runtime_error("pcdctl took no still of the simulated camera");
        // As it comes from the camera: blue first, and in memory of the pool.
        const QImage read = QImage(taken).convertToFormat(QImage::Format_BGR888);
        const PImageHeader header(5440, 3648, PDIP::ColorFormat::Bgr);
        if (read.sizeInBytes() != qsizetype(header.dataSize()) ||
            !m_frame.set(read.constBits(), header))
            throw std::runtime_error("the still does not have 20 megapixels");
    }

    /// Milliseconds for saving it under a name with this ending; negative if that failed.
    double saveMs(const QString& ending) {
        return madeMs(ending, [&](const QString& path) {
            return PPictureFile::save(path, m_frame.toQImage(), m_notes,
                                      PPictureFile::Existing::Keep, PPictureFile::Content::Frame)
                .isOk();
        });
    }
    /// The same for writing its bytes.
    double writeMs() {
        return madeMs(u".bytes"_qs, [&](const QString& path) {
            QFile file(path);
            const PDIP::ImageRawData data = std::as_const(m_frame).rawData(PDIP::AccessMode::Read);
            const auto size = qint64(data.size());
            return file.open(QIODevice::NewOnly | QIODevice::Unbuffered) &&
                   file.write(reinterpret_cast<const char*>(data.constData()), size) == size;
        });
    }
    /// The size of the last file, in megabytes.
    double lastMb() const { return double(m_lastSize) / 1e6; }

private:
    template <typename Make>
    double madeMs(const QString& ending, Make make) {
        const QString path = m_folder.filePath(u"still"_qs + ending);
        bool isMade = false;
        const double time = Stopwatch::processMs([&] { isMade = make(path); });
        m_lastSize = QFileInfo(path).size();
        return QFile::remove(path) && isMade ? time : -1;
    }

    /// In the folder the program is run from: the one for temporary files may be in memory.
    QTemporaryDir m_folder{u"bench_stills-XXXXXX"_qs};
    PImage m_frame;
    PPictureNotes m_notes{{{u"Camera"_qs, u"Simulated-20MC"_qs}}};
    qint64 m_lastSize = 0;
};

FigurePair preparePng() {
    const auto still = std::make_shared<Still>();
    return {[=] { return still->saveMs(u".png"_qs); }, {}};
}

FigurePair preparePngSize() {
    const auto still = std::make_shared<Still>();
    const double size = still->saveMs(u".png"_qs) < 0 ? -1 : still->lastMb();
    return {[=] { return size; }, {}}; // the same each time
}

FigurePair prepareTiff() {
    const auto still = std::make_shared<Still>();
    return {[=] { return still->saveMs(u".tif"_qs); }, [=] { return still->writeMs(); }};
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    FigureProgram::add(
        {"still/20MP-png", "save as PNG, CPU time", "", "ms", 1000, Figure::Bound::Value, 9},
        preparePng);
    FigureProgram::add({"still/20MP-png-size", "size of the PNG file", "", "MB", largestPng,
                        Figure::Bound::Value, 9},
                       preparePngSize);
    FigureProgram::add({"still/20MP-tiff", "save as TIFF, CPU time",
                        "write() of the same bytes, CPU time", "ms", 1.2},
                       prepareTiff);
    return FigureProgram::run(argc, argv);
}
