// SPDX-License-Identifier: MIT
#include <apps/common/ome/POmeDocument.h>

#include <apps/common/reading/OmeXml.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

POmeDocument colourRecording() {
    POmeDocument document;
    document.creator = u"program 1.2"_qs;
    document.name = u"run \"7\" & more.ome.tif"_qs;
    document.camera = {u"Small-S0001"_qs, u"Small"_qs, u"S0001"_qs, true};
    document.width = 320;
    document.height = 240;
    document.samples = 3;
    document.taken = QDateTime(QDate(2026, 3, 1), QTime(12, 0, 0, 250), Qt::UTC);
    document.exposure = {10.5, 1.2, false, u"2x2"_qs};
    document.notes = {{u"Simulated"_qs, u"yes"_qs},
                      {u"Setting a<b"_qs, u"SizeT=\"5\" & <Käfer>"_qs}};
    document.planes = {{0, 10.5}, {0.25, 20.125}, {0.5, std::nullopt}};
    return document;
}

OmeXml finished(const POmeDocument& document) {
    return OmeXml(document.toXml());
}

TEST(OmeDocument, every_kind_of_recording_is_valid) {
    POmeDocument document = colourRecording();
    EXPECT_EQ(finished(document).complaints(), QString());
    EXPECT_EQ(OmeXml(document.toUnfinishedXml().xml).complaints(), QString());
    document.pixelSizeUm = 0.345;
    document.sensorTemperature = -10.5;
    EXPECT_EQ(finished(document).complaints(), QString());
    document.samples = 1;
    document.exposure = {};
    document.camera.simulated = false;
    document.camera.serial.clear();
    document.notes.clear();
    EXPECT_EQ(finished(document).complaints(), QString());
}

TEST(OmeDocument, a_colour_picture_has_one_channel_of_three_samples) {
    const OmeXml xml = finished(colourRecording());
    EXPECT_EQ(xml.attribute("Pixels", "SizeX"), u"320"_qs);
    EXPECT_EQ(xml.attribute("Pixels", "SizeY"), u"240"_qs);
    EXPECT_EQ(xml.attribute("Pixels", "SizeC"), u"3"_qs);
    EXPECT_EQ(xml.attribute("Pixels", "Type"), u"uint8"_qs);
    EXPECT_EQ(xml.attribute("Pixels", "SignificantBits"), u"8"_qs);
    EXPECT_EQ(xml.attribute("Pixels", "Interleaved"), u"true"_qs);
    ASSERT_EQ(xml.elements("Channel").size(), 1);
    EXPECT_EQ(xml.attribute("Channel", "SamplesPerPixel"), u"3"_qs);
}

TEST(OmeDocument, a_grey_picture_has_one_channel_of_one_sample) {
    POmeDocument document = colourRecording();
    document.samples = 1;
    const OmeXml xml = finished(document);
    EXPECT_EQ(xml.attribute("Pixels", "SizeC"), u"1"_qs);
    EXPECT_EQ(xml.attribute("Channel", "SamplesPerPixel"), u"1"_qs);
}

TEST(OmeDocument, in_zarr_each_colour_is_a_channel_and_a_plane_of_its_own) {
    POmeDocument document = colourRecording();
    document.storage = POmeDocument::Storage::Zarr;
    const OmeXml xml = finished(document);
    EXPECT_EQ(xml.complaints(), QString());
    EXPECT_EQ(xml.attribute("Pixels", "SizeC"), u"3"_qs);
    EXPECT_EQ(xml.attribute("Pixels", "Interleaved"), u"false"_qs);
    EXPECT_EQ(xml.elements("TiffData").size(), 0);
    EXPECT_EQ(xml.elements("MetadataOnly").size(), 1);
    const auto channels = xml.elements("Channel");
    ASSERT_EQ(channels.size(), 3);
    const QStringList names{u"Red"_qs, u"Green"_qs, u"Blue"_qs};
    // Red, green, blue and alpha, of which only the first makes the number negative.
    const QStringList colours{u"-16776961"_qs, u"16711935"_qs, u"65535"_qs};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(channels[i].attributes.value(u"ID"_qs), u"Channel:0:%1"_qs.arg(i));
        EXPECT_EQ(channels[i].attributes.value(u"Name"_qs), names[i]);
        EXPECT_EQ(channels[i].attributes.value(u"Color"_qs), colours[i]);
        EXPECT_EQ(channels[i].attributes.value(u"SamplesPerPixel"_qs), u"1"_qs);
    }
    const auto planes = xml.elements("Plane");
    ASSERT_EQ(planes.size(), 9);
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(planes[i].attributes.value(u"TheT"_qs), QString::number(i / 3));
        EXPECT_EQ(planes[i].attributes.value(u"TheC"_qs), QString::number(i % 3));
        EXPECT_EQ(planes[i].attributes.value(u"DeltaT"_qs), QString::number(0.25 * (i / 3)));
    }
}

TEST(OmeDocument, in_zarr_a_recording_that_was_cut_short_has_a_number_to_overwrite) {
    POmeDocument document = colourRecording();
    document.storage = POmeDocument::Storage::Zarr;
    const POmeDocument::Unfinished unfinished = document.toUnfinishedXml();
    EXPECT_EQ(OmeXml(unfinished.xml).complaints(), QString());
    EXPECT_EQ(unfinished.xml.mid(unfinished.countPosition, POmeDocument::countDigits),
              POmeDocument::countText(1));
    EXPECT_EQ(OmeXml(unfinished.xml).elements("Plane").size(), 3); // of the first picture
}

TEST(OmeDocument, each_picture_has_its_place_time_and_exposure) {
    const OmeXml xml = finished(colourRecording());
    EXPECT_EQ(xml.attribute("Pixels", "SizeT"), u"3"_qs);
    const auto data = xml.elements("TiffData");
    const auto planes = xml.elements("Plane");
    ASSERT_EQ(data.size(), 3);
    ASSERT_EQ(planes.size(), 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(data[i].attributes.value(u"IFD"_qs), QString::number(i));
        EXPECT_EQ(data[i].attributes.value(u"FirstT"_qs), QString::number(i));
        EXPECT_EQ(data[i].attributes.value(u"PlaneCount"_qs), u"1"_qs);
        EXPECT_EQ(planes[i].attributes.value(u"TheT"_qs), QString::number(i));
        EXPECT_EQ(planes[i].attributes.value(u"DeltaT"_qs), QString::number(0.25 * i));
        EXPECT_EQ(planes[i].attributes.value(u"DeltaTUnit"_qs), u"s"_qs);
    }
    EXPECT_EQ(planes[1].attributes.value(u"ExposureTime"_qs), u"20.125"_qs);
    EXPECT_EQ(planes[1].attributes.value(u"ExposureTimeUnit"_qs), u"ms"_qs);
    EXPECT_FALSE(planes[2].attributes.contains(u"ExposureTime"_qs));
}

TEST(OmeDocument, the_camera_and_its_settings_are_in_it) {
    const OmeXml xml = finished(colourRecording());
    EXPECT_EQ(xml.attribute("OME", "Creator"), u"program 1.2"_qs);
    EXPECT_EQ(xml.attribute("Detector", "Model"), u"Small"_qs);
    EXPECT_EQ(xml.attribute("Detector", "SerialNumber"), u"S0001"_qs);
    EXPECT_EQ(xml.attribute("Detector", "Manufacturer"), QString());
    EXPECT_EQ(xml.attribute("DetectorSettings", "Gain"), u"1.2"_qs);
    EXPECT_EQ(xml.attribute("DetectorSettings", "Binning"), u"2x2"_qs);
    EXPECT_EQ(xml.text("AcquisitionDate"), u"2026-03-01T12:00:00.250Z"_qs);
}

TEST(OmeDocument, a_binning_the_schema_does_not_know_is_other) {
    POmeDocument document = colourRecording();
    document.exposure.binning = u"3x3"_qs;
    EXPECT_EQ(finished(document).attribute("DetectorSettings", "Binning"), u"Other"_qs);
}

TEST(OmeDocument, pixel_size_and_temperature_are_there_with_units_if_known) {
    POmeDocument document = colourRecording();
    EXPECT_EQ(finished(document).attribute("Pixels", "PhysicalSizeX"), QString());
    EXPECT_TRUE(finished(document).elements("ImagingEnvironment").isEmpty());
    document.pixelSizeUm = 0.345;
    document.sensorTemperature = -10.5;
    const OmeXml xml = finished(document);
    for (const char* axis : {"PhysicalSizeX", "PhysicalSizeY"}) {
        EXPECT_EQ(xml.attribute("Pixels", axis), u"0.345"_qs);
        EXPECT_EQ(xml.attribute("Pixels", (std::string(axis) + "Unit").c_str()), u"µm"_qs);
    }
    EXPECT_EQ(xml.attribute("ImagingEnvironment", "Temperature"), u"-10.5"_qs);
    EXPECT_EQ(xml.attribute("ImagingEnvironment", "TemperatureUnit"), u"°C"_qs);
}

TEST(OmeDocument, a_simulated_camera_is_called_so_in_plain_words) {
    POmeDocument document = colourRecording();
    EXPECT_TRUE(finished(document).text("Description").startsWith(u"Simulated camera"_qs));
    document.camera.simulated = false;
    EXPECT_TRUE(finished(document).elements("Description").isEmpty());
}

TEST(OmeDocument, texts_come_back_as_they_are) {
    const OmeXml xml = finished(colourRecording());
    EXPECT_EQ(xml.attribute("Image", "Name"), u"run \"7\" & more.ome.tif"_qs);
    EXPECT_EQ(xml.note(u"Setting a<b"_qs), u"SizeT=\"5\" & <Käfer>"_qs);
}

TEST(OmeDocument, characters_that_xml_cannot_write_are_left_out) {
    POmeDocument document = colourRecording();
    document.camera.serial = u"S"_qs + QChar(0) + QChar(7) + u"1\t2"_qs + QChar(0xffff);
    const OmeXml xml = finished(document);
    EXPECT_EQ(xml.complaints(), QString());
    EXPECT_EQ(xml.attribute("Detector", "SerialNumber").simplified(), u"S1 2"_qs);
}

TEST(OmeDocument, an_unfinished_one_has_the_number_of_pictures_in_a_place_of_its_own) {
    POmeDocument document = colourRecording();
    document.name = u"SizeT=\"0000000001\""_qs;
    POmeDocument::Unfinished unfinished = document.toUnfinishedXml();
    EXPECT_EQ(OmeXml(unfinished.xml).attribute("Pixels", "SizeT").toInt(), 1);
    unfinished.xml.replace(unfinished.countPosition, POmeDocument::countDigits,
                           POmeDocument::countText(12'345));
    const OmeXml xml(unfinished.xml);
    EXPECT_EQ(xml.complaints(), QString());
    EXPECT_EQ(xml.attribute("Pixels", "SizeT").toInt(), 12'345);
    // Stands for all directories of the file, whatever their number.
    ASSERT_EQ(xml.elements("TiffData").size(), 1);
    EXPECT_TRUE(xml.elements("TiffData").at(0).attributes.isEmpty());
    EXPECT_EQ(xml.elements("Plane").size(), 1);
}

} // namespace
