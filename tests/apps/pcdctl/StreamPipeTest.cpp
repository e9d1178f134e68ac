// SPDX-License-Identifier: MIT
// What `stream --to` writes.
#include <apps/pcdctl/CameraCommandTest.h>
#include <apps/pcdctl/PipeProcess.h>

#include <apps/common/reading/SpawnedProgram.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QDir>
#include <QImage>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// One camera of 321 x 241 pixels, which sends one picture again and again.
class StreamPipe : public CameraCommandTest {
protected:
    static constexpr int width = 321;
    static constexpr int height = 241;

    void SetUp() override { scene.setResolution(width, height, 50); }

    /// The picture that the camera takes, read from a file.
    QImage still() const {
        EXPECT_EQ(run({u"snap"_qs, u"-o"_qs, path(u"still.png"_qs)}).exitCode, 0);
        return QImage(path(u"still.png"_qs)).convertToFormat(QImage::Format_RGB888);
    }
    /// The result of a stream to the standard output.
    CtlResult stream(const QStringList& more) const {
        return run(QStringList{u"stream"_qs, u"--to"_qs, u"-"_qs} + more);
    }
    void makeGrey() { scene.set(u"bits"_qs, 8); }
};

QByteArray toBgr(const QImage& rgb) {
    QByteArray bytes;
    for (int y = 0; y < rgb.height(); ++y) {
        for (int x = 0; x < rgb.width(); ++x) {
            const uchar* const pixel = rgb.constScanLine(y) + 3 * x;
            bytes.append(char(pixel[2])).append(char(pixel[1])).append(char(pixel[0]));
        }
    }
    return bytes;
}

TEST_F(StreamPipe, raw_frames_are_the_pixels_of_a_still_and_nothing_else) {
    const QByteArray expected = toBgr(still());
    const CtlResult result = stream({u"-n"_qs, u"3"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(expected.size(), qsizetype(width) * height * 3);
    EXPECT_EQ(result.output, expected.repeated(3));
}

TEST_F(StreamPipe, a_header_on_request_describes_raw_frames) {
    const CtlResult result = stream({u"-n"_qs, u"2"_qs, u"--as"_qs, u"raw"_qs, u"--header"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    const qsizetype line = result.output.indexOf('\n') + 1;
    const QJsonObject header = QJsonDocument::fromJson(result.output.left(line)).object();
    EXPECT_EQ(header[u"camera"_qs].toString(), smallCameraId);
    EXPECT_EQ(header[u"width"_qs].toInt(), width);
    EXPECT_EQ(header[u"height"_qs].toInt(), height);
    EXPECT_EQ(header[u"pixelFormat"_qs].toString(), u"bgr24"_qs);
    EXPECT_GT(header[u"fps"_qs].toDouble(), 0);
    EXPECT_EQ(result.output.size() - line, 2 * header[u"frameBytes"_qs].toInt());
    EXPECT_TRUE(header[u"simulated"_qs].toBool());
}

TEST_F(StreamPipe, the_summary_is_on_standard_error_and_names_the_frames_that_were_passed_on) {
    const CtlResult result = stream({u"-n"_qs, u"2"_qs});
    EXPECT_TRUE(result.errors.contains(u"Passed on: 2 frames to standard output\n"_qs))
        << result.errors.toStdString();
    const CtlResult json = stream({u"-n"_qs, u"2"_qs, u"--json"_qs});
    const QJsonObject report = QJsonDocument::fromJson(json.errors.toUtf8()).object();
    const QJsonObject passed = report[u"passed_on"_qs].toObject();
    EXPECT_EQ(passed[u"written"_qs].toInt(), 2);
    EXPECT_EQ(passed[u"dropped"_qs].toInt(), 0);
    EXPECT_EQ(passed[u"bytes"_qs].toInt(), json.output.size());
    EXPECT_TRUE(passed[u"balanced"_qs].toBool());
    EXPECT_FALSE(passed[u"reader_closed"_qs].toBool());
    EXPECT_TRUE(report[u"ledger"_qs].toObject()[u"balanced"_qs].toBool());
}

TEST_F(StreamPipe, log_records_do_not_get_between_the_frames) {
    const CtlResult result = stream({u"-n"_qs, u"2"_qs, u"--log-level"_qs, u"debug"_qs});
    EXPECT_EQ(result.output.size(), 2 * width * height * 3);
    EXPECT_TRUE(result.errors.contains(u"debug"_qs, Qt::CaseInsensitive))
        << result.errors.toStdString();
}

TEST_F(StreamPipe, frames_go_to_a_new_file_and_the_summary_to_standard_output) {
    const QString file = path(u"new/frames.raw"_qs);
    const CtlResult result = run({u"stream"_qs, u"-n"_qs, u"2"_qs, u"--to"_qs, file, u"--json"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(readFile(file), toBgr(still()).repeated(2));
    EXPECT_EQ(result.json[u"passed_on"_qs].toObject()[u"written"_qs].toInt(), 2);
    EXPECT_EQ(result.json[u"to"_qs].toString(), u"\"%1\""_qs.arg(file));
}

TEST_F(StreamPipe, a_named_pipe_is_waited_for_until_it_has_a_reader) {
    const QByteArray pipe = path(u"pipe"_qs).toLocal8Bit();
    ASSERT_EQ(mkfifo(pipe.constData(), 0600), 0);
    const QString file = scene.writeTo(path(u"scene.json"_qs));
    CtlProcess process({u"stream"_qs, u"-n"_qs, u"3"_qs, u"--to"_qs, path(u"pipe"_qs),
                        u"--sdk=sim"_qs, u"--scene"_qs, file});
    process.start();
    QByteArray got; // opening waits for the writer
    std::thread reader([&] { got = readFile(path(u"pipe"_qs)); });
    EXPECT_TRUE(process.finish());
    // If it ended without having opened the pipe, the reader still waits for that.
    ::close(::open(pipe.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    reader.join();
    EXPECT_EQ(process.exitCode(), 0) << process.errors().toStdString();
    EXPECT_EQ(got.size(), 3 * width * height * 3);
}

/// Decodes YUV4MPEG2 with a program of the MJPEG tools; returns the pictures in their format PNM.
QByteArray decode(const char* program, const QString& folder, const QByteArray& y4m) {
    const QDir dir(folder);
    writeFile(dir.filePath(u"frames.y4m"_qs), y4m);
    const QByteArray command = QByteArray(program) + " < frames.y4m";
    const QString failure =
        spawnFailure({"sh", "-c", "cd \"$1\" && exec " + command, "sh", QFile::encodeName(folder)},
                     QFile::encodeName(dir.filePath(u"pictures.pnm"_qs)),
                     QFile::encodeName(dir.filePath(u"errors"_qs)));
    EXPECT_EQ(failure, QString()) << readFile(dir.filePath(u"errors"_qs)).toStdString();
    return readFile(dir.filePath(u"pictures.pnm"_qs));
}

/// The samples of the pictures in a series of PNM, one after the other.
QByteArray toSamples(const QByteArray& pictures, const QByteArray& header, qsizetype size) {
    QByteArray samples;
    qsizetype at = 0;
    while (pictures.mid(at).startsWith(header)) {
        samples += pictures.mid(at + header.size(), size);
        at += header.size() + size;
    }
    EXPECT_EQ(at, pictures.size()) << pictures.mid(at, 20).toStdString();
    return samples;
}

/// The largest difference between two samples at the same place.
int largestDifference(const QByteArray& a, const QByteArray& b) {
    EXPECT_EQ(a.size(), b.size());
    int largest = 0;
    for (qsizetype i = 0; i < std::min(a.size(), b.size()); ++i)
        largest = std::max(largest, std::abs(int(uchar(a[i])) - int(uchar(b[i]))));
    return largest;
}

QByteArray toRgb(const QImage& picture) {
    QByteArray bytes;
    for (int y = 0; y < picture.height(); ++y)
        bytes.append(reinterpret_cast<const char*>(picture.constScanLine(y)),
                     qsizetype(3) * picture.width());
    return bytes;
}

TEST_F(StreamPipe, a_decoder_gets_the_colours_of_each_pixel_back) {
    const CtlResult result =
        stream({u"-n"_qs, u"2"_qs, u"--as"_qs, u"y4m"_qs, u"--chroma"_qs, u"444"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    const QByteArray pictures = decode("y4mtopnm -v 0", path(u"."_qs), result.output);
    const QByteArray samples = toSamples(pictures, "P6\n321 241 255\n", qsizetype(3) * 321 * 241);
    // Rounded twice, with steps of 1.14 between the codes.
    EXPECT_LE(largestDifference(samples, toRgb(still()).repeated(2)), 3);
}

TEST_F(StreamPipe, a_decoder_gets_colours_of_four_pixels_back_where_they_are_the_same) {
    scene.setResolution(320, 240, 50);
    const CtlResult result = stream({u"-n"_qs, u"2"_qs, u"--as"_qs, u"y4m"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_TRUE(result.output.startsWith("YUV4MPEG2 W320 H240 F"));
    const QByteArray pictures = decode("y4mtoppm -v 0", path(u"."_qs), result.output);
    const QByteArray samples = toSamples(pictures, "P6\n320 240 255\n", qsizetype(3) * 320 * 240);
    const QByteArray expected = toRgb(still());
    ASSERT_EQ(samples.size(), 2 * expected.size());
    // Between the patches, colours are mixed.
    qsizetype off = 0;
    for (qsizetype i = 0; i < samples.size(); ++i)
        off += std::abs(int(uchar(samples[i])) - int(uchar(expected[i % expected.size()]))) > 4;
    EXPECT_LT(off, samples.size() / 20);
}

TEST_F(StreamPipe, a_decoder_gets_grey_frames_back) {
    makeGrey();
    const CtlResult result = stream({u"-n"_qs, u"2"_qs, u"--as"_qs, u"y4m"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    const QByteArray pictures = decode("y4mtopnm -v 0", path(u"."_qs), result.output);
    QByteArray samples = toSamples(pictures, "P5\n321 241 255\n", qsizetype(321) * 241);
    QByteArray expected;
    const QImage grey = QImage(still()).convertToFormat(QImage::Format_Grayscale8);
    for (int y = 0; y < height; ++y) {
        // This decoder takes every stream for one of the limited range.
        for (int x = 0; x < width; ++x)
            expected.append(char(
                std::clamp(std::lround((grey.constScanLine(y)[x] - 16) * 255 / 219.0), 0L, 255L)));
    }
    EXPECT_LE(largestDifference(samples, expected.repeated(2)), 1);
    EXPECT_GT(*std::max_element(expected.begin(), expected.end()), 0);
}

TEST_F(StreamPipe, an_encoder_reads_the_frames) {
    scene.setResolution(320, 240, 25);
    const CtlResult result = stream({u"-n"_qs, u"10"_qs, u"--as"_qs, u"y4m"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    // MPEG has certain rates only, and the measured one is another on a busy computer.
    QByteArray y4m = result.output;
    const qsizetype rate = y4m.indexOf(" F") + 2;
    y4m.replace(rate, y4m.indexOf(' ', rate) - rate, "25:1");
    const QByteArray video = decode("mpeg2enc -v 0 -o film.m2v", path(u"."_qs), y4m);
    EXPECT_EQ(video, "");
    EXPECT_TRUE(readFile(path(u"film.m2v"_qs)).startsWith(QByteArray("\0\0\1\xb3", 4)));
    EXPECT_EQ(readFile(path(u"film.m2v"_qs)).count(QByteArray("\0\0\1\0", 4)), 10); // pictures
}

TEST_F(StreamPipe, a_recorded_stream_is_replayed_without_its_output) {
    const QString trace = path(u"a.trace"_qs);
    ASSERT_EQ(stream({u"-n"_qs, u"2"_qs, u"--trace"_qs, trace}).exitCode, 0);
    const CtlResult replayed = runCtl({u"replay"_qs, trace});
    EXPECT_EQ(replayed.exitCode, 0) << replayed.errors.toStdString();
    EXPECT_LT(replayed.output.size(), 2000); // the summary
    EXPECT_TRUE(replayed.output.contains("Passed on: 2 frames to "))
        << replayed.output.toStdString();
}

} // namespace
