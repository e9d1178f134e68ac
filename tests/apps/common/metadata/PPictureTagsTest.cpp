// SPDX-License-Identifier: MIT
// The tags of saved pictures, as another program reads them.
#include <apps/common/metadata/PPictureTags.h>

#include <apps/common/TestFrames.h>
#include <apps/common/reading/ExifTool.h>

#include <apps/common/ome/POmeStackWriter.h>
#include <apps/common/picture/PPictureFile.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QScopeGuard>

using namespace std::chrono_literals;

namespace {

const PCameraIdentity simulated{u"Small-1"_qs, u"Small"_qs, u"S0001"_qs, true};
const PCameraIdentity real{u"Small-1"_qs, u"Small"_qs, u"S0001"_qs, false};

class PictureTags : public FolderTest, public WithRow<const char*> {
public:
    static std::string toRowName(const char* const& row) {
        return qstrcmp(row, "a.png") == 0 ? "png" : "tiff";
    }

protected:
    static PDeviceFrame frame(quint64 number = 1) {
        return testFrame(
            number, 123ms,
            makeSettings(
                {{"autoexpottime", 158'647}, {"autoexponeable", true}, {"autoexpogain", 100}}));
    }
    /// The tags in the saved file of a frame.
    QJsonObject saved(const PCameraIdentity& camera, std::optional<double> pixelSizeUm) const {
        const QString file = path(QString::fromLatin1(GetParam()));
        const PDeviceFrame picture = frame();
        const PStatus status =
            PPictureFile::save(file, picture.image.toQImage(),
                               PPictureNotes::of(camera, picture.stamp.get(), pixelSizeUm),
                               PPictureFile::Existing::Keep, PPictureFile::Content::Frame);
        EXPECT_TRUE(status.isOk()) << status.reason().toStdString();
        return exifToolTags(file);
    }
};

/// "Group:Tag" of all tags about a resolution.
QStringList resolutions(const QJsonObject& tags) {
    QStringList found = tags.keys();
    found.removeIf([](const QString& key) {
        return !key.contains(u"Resolution"_qs) && !key.contains(u"PixelsPerUnit"_qs);
    });
    return found;
}

ROW_TEST(PictureTags, name_program_camera_time_and_exposure) {
    const QByteArray zone = qgetenv("TZ");
    qputenv("TZ", "IST-5:30"); // where clocks are ahead by that much
    const auto restore =
        qScopeGuard([&] { zone.isNull() ? qunsetenv("TZ") : qputenv("TZ", zone); });
    const QJsonObject tags = saved(simulated, std::nullopt);
    const auto text = [&](const char* tag) {
        return tags.value(QString::fromLatin1(tag)).toString();
    };
    EXPECT_EQ(text("IFD0:Make"), u"Simulated camera"_qs);
    EXPECT_EQ(text("IFD0:Model"), u"Small"_qs);
    EXPECT_TRUE(text("IFD0:Software").startsWith(QCoreApplication::applicationName()));
    EXPECT_EQ(text("IFD0:ModifyDate"), u"2026:01:01 05:30:00"_qs);
    EXPECT_EQ(text("ExifIFD:DateTimeOriginal"), u"2026:01:01 05:30:00"_qs);
    EXPECT_EQ(tags.value(u"ExifIFD:SubSecTimeOriginal"_qs).toInt(), 123);
    EXPECT_EQ(text("ExifIFD:OffsetTimeOriginal"), u"+05:30"_qs);
    EXPECT_EQ(text("ExifIFD:SerialNumber"), u"S0001"_qs);
    EXPECT_NEAR(tags.value(u"ExifIFD:ExposureTime"_qs).toDouble(), 0.158647, 1e-6);
    EXPECT_EQ(tags.value(u"ExifIFD:ExposureMode"_qs).toInt(-1), 0);
}

ROW_TEST(PictureTags, have_the_resolution_of_the_specimen) {
    const QJsonObject tags = saved(simulated, 0.345);
    EXPECT_NEAR(tags.value(u"IFD0:XResolution"_qs).toDouble(), 1e4 / 0.345, 0.1);
    EXPECT_NEAR(tags.value(u"IFD0:YResolution"_qs).toDouble(), 1e4 / 0.345, 0.1);
    EXPECT_EQ(tags.value(u"IFD0:ResolutionUnit"_qs).toInt(), 3); // centimetres
    if (qstrcmp(GetParam(), "a.png") == 0) {
        EXPECT_EQ(tags.value(u"PNG-pHYs:PixelsPerUnitX"_qs).toInt(), 2'898'551);
        EXPECT_EQ(tags.value(u"PNG-pHYs:PixelsPerUnitY"_qs).toInt(), 2'898'551);
        EXPECT_EQ(tags.value(u"PNG-pHYs:PixelUnits"_qs).toInt(), 1); // metres
    }
}

ROW_TEST(PictureTags, have_no_resolution_where_none_is_known) {
    EXPECT_EQ(resolutions(saved(simulated, std::nullopt)), QStringList());
}

ROW_TEST(PictureTags, name_no_maker_of_a_real_camera) {
    const QJsonObject tags = saved(real, std::nullopt);
    EXPECT_FALSE(tags.contains(u"IFD0:Make"_qs));
    EXPECT_EQ(tags.value(u"IFD0:Model"_qs).toString(), u"Small"_qs);
}

ROW_TEST(PictureTags, the_text_beside_them_has_one_exposure_and_one_gain) {
    const QString file = path(QString::fromLatin1(GetParam()));
    const QJsonObject tags = saved(simulated, std::nullopt);
    QString description = tags.value(u"IFD0:ImageDescription"_qs).toString();
    for (const char* const key : {"Exposure", "Gain"}) { // PNG has them one by one
        const QString text = tags.value(u"PNG:"_qs + QString::fromLatin1(key)).toString();
        description +=
            text.isEmpty() ? QString() : u"\n%1: %2"_qs.arg(QString::fromLatin1(key), text);
    }
    EXPECT_TRUE(description.contains(u"\nExposure: 158.647 ms (automatic)"_qs))
        << description.toStdString();
    EXPECT_TRUE(description.contains(u"\nGain: 100 %"_qs)) << description.toStdString();
    EXPECT_FALSE(readFile(file).contains("158647"));
}

ROWS(Apps, PictureTags, "a.png", "a.tif");

class StackTags : public PictureTags {};

TEST_F(StackTags, are_in_every_picture_of_a_stack) {
    POmeStackWriter::Options options;
    options.path = path(u"a.ome.tif"_qs);
    options.camera = simulated;
    options.frames = 2; // a classic TIFF: ExifTool uses the directory name
    options.pixelSizeUm = 0.5;
    POmeStackWriter writer(options);
    ASSERT_TRUE(writer.write(frame(1), 1).isOk());
    ASSERT_TRUE(writer.write(frame(2), 2).isOk());
    ASSERT_TRUE(writer.finish({}).isOk());
    const QJsonObject tags = exifToolTags(options.path);

    for (const QString& directory : {u"IFD0"_qs, u"IFD1"_qs}) {
        EXPECT_EQ(tags.value(directory + u":Make"_qs).toString(), u"Simulated camera"_qs);
        EXPECT_EQ(tags.value(directory + u":Model"_qs).toString(), u"Small"_qs);
        EXPECT_EQ(tags.value(directory + u":XResolution"_qs).toDouble(), 20'000);
        EXPECT_FALSE(tags.value(directory + u":ModifyDate"_qs).toString().isEmpty());
    }
    EXPECT_NEAR(tags.value(u"ExifIFD:ExposureTime"_qs).toDouble(), 0.158647, 1e-6);
    EXPECT_TRUE(tags.value(u"IFD0:ImageDescription"_qs).toString().contains(u"<OME"_qs));
}

} // namespace
