// SPDX-License-Identifier: MIT
// The commands with a camera of another plugin, whose properties they find only by role.
#include <apps/pcdctl/CameraCommandTest.h>

#include <apps/common/reading/OmeXml.h>
#include <apps/common/reading/TiffReadBack.h>

#include <support/QtPrinters.h>

namespace {

class OtherCamera : public CameraCommandTest {
protected:
    void SetUp() override { scene = CtlScene(); }

    CtlResult runOther(const QStringList& arguments) const {
        return run(arguments + QStringList{u"--plugin-path"_qs, QStringLiteral(LAB_PLUGIN)});
    }
    /// Records some frames with these settings; returns the metadata of the stack.
    OmeXml recorded(const QStringList& settings) const {
        const QString file = path(u"a.ome.tif"_qs);
        QStringList arguments{u"record"_qs, u"-o"_qs, file, u"--frames"_qs, u"3"_qs};
        for (const QString& setting : settings)
            arguments << u"--set"_qs << setting;
        const CtlResult result = runOther(arguments);
        EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
        const TiffReadBack tiff(file);
        EXPECT_TRUE(tiff.isOpen());
        return OmeXml(tiff.isOpen() ? tiff.description() : QByteArray());
    }
};

TEST_F(OtherCamera, is_recorded_with_time_gain_binning_and_temperature) {
    const OmeXml xml = recorded({u"shutter=0.02"_qs, u"amplification=20"_qs, u"join=2"_qs});
    EXPECT_EQ(xml.complaints(), QString());
    const auto planes = xml.elements("Plane");
    ASSERT_EQ(planes.size(), 3);
    for (const OmeXml::Element& plane : planes) {
        EXPECT_EQ(plane.attributes.value(u"ExposureTime"_qs), u"20"_qs);
        EXPECT_EQ(plane.attributes.value(u"ExposureTimeUnit"_qs), u"ms"_qs);
    }
    EXPECT_EQ(xml.attribute("DetectorSettings", "Gain"), u"10"_qs);
    EXPECT_EQ(xml.attribute("DetectorSettings", "Binning"), u"2x2"_qs);
    EXPECT_EQ(xml.attribute("ImagingEnvironment", "Temperature"), u"21.5"_qs);
    EXPECT_EQ(xml.attribute("Pixels", "SizeX"), u"80"_qs);
    EXPECT_EQ(xml.note(u"Exposure"_qs), u"20 ms (manual)"_qs);
    EXPECT_EQ(xml.note(u"Gain"_qs), u"1000 %"_qs);
    EXPECT_EQ(xml.note(u"Binning"_qs), u"2"_qs);
    EXPECT_EQ(xml.note(u"Setting filter"_qs), u"3"_qs);
}

TEST_F(OtherCamera, has_its_settings_in_every_picture_although_none_was_set) {
    const CtlResult result =
        runOther({u"stream"_qs, u"--frames=1"_qs, u"--save"_qs, path(u"a#.tif"_qs)});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    const TiffReadBack tiff(path(u"a1.tif"_qs));
    ASSERT_TRUE(tiff.isOpen());
    const QByteArray text = tiff.description();
    EXPECT_TRUE(text.contains("Exposure: 5 ms (manual)")) << text.constData();
    EXPECT_TRUE(text.contains("Setting filter: 3")) << text.constData();
}

TEST_F(OtherCamera, has_numbers_that_are_not_whole_as_numbers_in_json) {
    const CtlResult result = runOther({u"props"_qs, u"shutter"_qs, u"--json"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_TRUE(result.output.contains("\"value\": 0.005")) << result.output.constData();
    EXPECT_TRUE(result.output.contains("\"maximum\": 60")) << result.output.constData();
}

TEST_F(OtherCamera, is_recorded_with_automatic_exposure) {
    EXPECT_EQ(recorded({u"selftimed=on"_qs}).note(u"Exposure"_qs), u"5 ms (automatic)"_qs);
}

TEST_F(OtherCamera, without_triggers_says_so) {
    const CtlResult result = runOther({u"trigger"_qs, u"--exposure=2ms"_qs});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_TRUE(result.errors.contains(u"the camera does not support triggered capture"_qs))
        << result.errors.toStdString();
}

TEST_F(OtherCamera, keeps_numbers_within_their_range) {
    const CtlResult result = runOther({u"set"_qs, u"shutter=0"_qs});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_TRUE(result.errors.contains(u"expected a number from 0.0001 to 60"_qs))
        << result.errors.toStdString();
}

TEST_F(OtherCamera, whose_frames_find_no_memory_is_not_said_to_send_none) {
    const QString reason = u" dropped: no memory"_qs;
    for (const QStringList& command :
         {QStringList{u"stream"_qs, u"--frames=3"_qs},
          QStringList{u"record"_qs, u"--frames=3"_qs, u"-o"_qs, path(u"a.ome.tif"_qs)},
          QStringList{u"snap"_qs, u"-o"_qs, path(u"a.png"_qs)}}) {
        const CtlResult result =
            runOther(command + QStringList{u"--set"_qs, u"filter=6"_qs, u"--timeout=0.3"_qs});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_TRUE(result.errors.contains(reason)) << result.errors.toStdString();
        EXPECT_FALSE(result.errors.contains(u"sent no frame"_qs)) << result.errors.toStdString();
    }
}

TEST_F(OtherCamera, that_its_plugin_deletes_while_it_streams_counts_as_unplugged) {
    for (const QStringList& command :
         {QStringList{u"stream"_qs, u"--frames=100000"_qs},
          QStringList{u"record"_qs, u"--frames=100000"_qs, u"-o"_qs, path(u"a.ome.tif"_qs)}}) {
        const CtlResult result = runOther(command + QStringList{u"--set"_qs, u"filter=7"_qs});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_TRUE(result.errors.contains(u"camera Lab-L7 was unplugged"_qs))
            << result.errors.toStdString();
    }
}

} // namespace
