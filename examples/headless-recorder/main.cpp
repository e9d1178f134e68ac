// SPDX-License-Identifier: MIT
// Records frames of a camera without a window: TIFF files, frames.csv with number and time of each,
// and settings.json. Ends after -n frames, by Ctrl-C, or when the camera is gone, and writes what
// was taken by then. Exit code: 0 if all frames are there, else 1.
#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceManager.h>
#include <PCd/plugin/PPluginLoader.h>
#include <PCd/profile/PDeviceProfileFile.h>

#include <PCore/file/PWholeFile.h>
#include <PCore/work/PWorkQueue.h>

#include <QBuffer>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QImageWriter>
#include <QPointer>
#include <QSocketNotifier>
#include <QTextStream>

#include <atomic>
#include <csignal>

#include <sys/signalfd.h>

namespace {

int fail(const QString& reason) {
    QTextStream(stderr) << "headless-recorder: " << reason << '\n';
    return 1;
}

/// Takes each frame on the camera's thread and writes it on one of its own. The frames that wait
/// for the disk are limited in bytes: those that do not fit are refused and counted.
class FrameWriter : public PFrameSink {
public:
    /// Calls `settled`, on either thread, after each frame that was written, refused, or failed.
    FrameWriter(const QDir& folder, std::size_t bytes, std::function<void()> settled)
        : m_folder(folder)
        , m_settled(std::move(settled))
        , m_list(folder.filePath("frames.csv"))
        , m_queue(bytes) {
        if (m_list.open(QIODevice::WriteOnly))
            m_list.write("file,number,arrived\n");
    }
    bool takeFrame(const PDeviceFrame& frame, Kind) override {
        const bool fits = m_queue.push( // copies of a frame share its pixels
            frame.image.dataSize(), [this, frame] { return write(frame); },
            [this](const PStatus& result) {
                ++(result.isOk() ? written : failed);
                problem = problem.isEmpty() ? result.reason() : problem;
                m_settled();
            });
        if (!fits) {
            ++refused;
            m_settled();
        }
        return fits;
    }
    /// Writes what waits; after the stream has stopped.
    void finish() { m_queue.stop(); }

    std::atomic<int> written = 0, refused = 0, failed = 0;
    QString problem; ///< why the first failed; after finish()

private:
    PStatus write(const PDeviceFrame& frame) {
        const QString name = QString("frame-%1.tif").arg(written + 1, 6, 10, QChar(u'0'));
        QBuffer picture;
        QImageWriter writer(&picture, "tiff");
        if (!writer.write(frame.image.toQImage()))
            return PStatus::failure(name + ": " + writer.errorString());
        // In one step: what is left of a full disk must not look like a picture.
        const PStatus replaced = PWholeFile::replace(m_folder.filePath(name), picture.data());
        if (!replaced.isOk())
            return PStatus::failure(name + ": " + replaced.reason());
        QTextStream(&m_list) << name << ',' << frame.stamp->sequence << ','
                             << frame.stamp->arrivedUtc.toString(Qt::ISODateWithMs) << '\n';
        return m_list.flush() ? PStatus() : PStatus::failure("frames.csv: " + m_list.errorString());
    }

    const QDir m_folder;
    const std::function<void()> m_settled;
    QFile m_list;
    PWorkQueue m_queue; // last: its thread uses all of the above
};

/// A file that is readable after Ctrl-C or SIGTERM, which no longer end the program. For the start
/// of the program: its threads inherit this.
int openSignals() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    return signalfd(-1, &set, SFD_CLOEXEC);
}

} // namespace

int main(int argc, char* argv[]) {
    const int signalFile = openSignals();
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addPositionalArgument("FOLDER", "A new folder, for the files.");
    parser.addOptions({{{"c", "camera"}, "The camera; else the first.", "id"},
                       {{"n", "frames"}, "How many frames.", "number", "100"},
                       {"memory", "For frames that wait for the disk.", "MiB", "1024"}});
    parser.process(application);
    const int frames = parser.value("frames").toInt();
    const int mebibytes = parser.value("memory").toInt();
    if (parser.positionalArguments().size() != 1 || frames < 1 || mebibytes < 1)
        return fail("expected one FOLDER, and --frames and --memory of 1 or more; see --help");

    PPluginLoader loader;
    PDeviceManager manager;
    const QList<PDeviceRegister*> registers = loader.load();
    for (PDeviceRegister* cameras : registers)
        manager.addRegister(cameras);
    for (const PPluginLoader::Failure& failure : loader.failures())
        fail(QString("%1: %2").arg(failure.path, failure.reason)); // others may have cameras
    const PDeviceManager::Selection selection = manager.select(parser.value("camera"));
    if (selection.device == nullptr)
        return fail(selection.problem);
    const QPointer<PDevice> camera = selection.device; // null when it is gone
    if (const PStatus linked = camera->link(); !linked.isOk())
        return fail(linked.reason());
    const QDir folder(parser.positionalArguments().first());
    if (!folder.mkpath(".") || !folder.isEmpty())
        return fail(QString("\"%1\" cannot be made, or is not empty").arg(folder.path()));
    const PStatus saved = PDeviceProfileFile::save(*camera, folder.filePath("settings.json"));
    if (!saved.isOk())
        return fail(saved.reason());

    std::shared_ptr<FrameWriter> writer;
    writer = std::make_shared<FrameWriter>(folder, std::size_t(mebibytes) << 20, [&] {
        // Queued: from the threads of the camera and of the writer to this one.
        if (writer->failed > 0 || writer->written + writer->refused >= frames)
            QMetaObject::invokeMethod(&application, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    QSocketNotifier signal(signalFile, QSocketNotifier::Read);
    QObject::connect(&signal, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    QObject::connect(camera, &PDevice::unlinked, &application, &QCoreApplication::quit);
    camera->addFrameSink(writer);
    camera->limitLiveFrames(quint64(frames)); // later ones are not taken
    if (const PStatus started = camera->startStream(); !started.isOk())
        return fail(started.reason());
    QCoreApplication::exec();
    if (camera != nullptr)
        camera->stopStream();
    writer->finish();

    QTextStream(stdout) << writer->written << " of " << frames << " frames written\n";
    if (writer->refused > 0)
        fail(QString("lost frames: %1, as the disk is too slow").arg(writer->refused));
    if (writer->failed > 0)
        fail(QString("lost frames: %1, %2").arg(QString::number(writer->failed), writer->problem));
    if (camera == nullptr || camera->isGone())
        fail("the camera is gone");
    return writer->written == frames ? 0 : 1;
}
