// SPDX-License-Identifier: MIT
#include <apps/common/output/PRecordOutput.h>

#include <apps/common/ome/POmeStackWriter.h>
#include <apps/common/record/PSeriesWriter.h>
#include <apps/common/zarr/PZarrWriter.h>

#include <PCd/FakeDevice.h>

#include <support/QtPrinters.h>

#include <gmock/gmock.h>

using Form = PRecordOutput::Form;
using testing::HasSubstr;

namespace {

std::string reasonAgainst(const QString& path) {
    return PRecordOutput::checkName(path).reason().toStdString();
}

} // namespace

TEST(PRecordOutput, the_ending_chooses_the_form) {
    EXPECT_EQ(PRecordOutput::toForm(u"a/run.ome.tif"_qs), Form::Stack);
    EXPECT_EQ(PRecordOutput::toForm(u"RUN.OME.ZARR"_qs), Form::Zarr);
    EXPECT_EQ(PRecordOutput::toForm(u"f-####.tif"_qs), Form::Series);
    EXPECT_EQ(PRecordOutput::toForm(u"run.zarr"_qs), Form::Series);
}

TEST(PRecordOutput, each_form_has_its_writer) {
    FakeDevice device;
    const auto make = [&device](const QString& path) {
        return PRecordOutput::makeWriter({path, 3, 0.5, false}, {}, device);
    };
    EXPECT_NE(dynamic_cast<POmeStackWriter*>(make(u"run.ome.tif"_qs).get()), nullptr);
    EXPECT_NE(dynamic_cast<PZarrWriter*>(make(u"run.ome.zarr"_qs).get()), nullptr);
    EXPECT_NE(dynamic_cast<PSeriesWriter*>(make(u"f-#.tif"_qs).get()), nullptr);
}

TEST(PRecordOutput, names_of_recordings_are_taken) {
    for (const QString& path : {u"run.ome.tif"_qs, u"a#/run.ome.tiff"_qs, u"run.ome.zarr"_qs,
                                u"f-##.png"_qs, u"f-#.TIF"_qs})
        EXPECT_EQ(reasonAgainst(path), "") << path.toStdString();
}

TEST(PRecordOutput, other_names_are_refused_with_what_was_expected) {
    EXPECT_THAT(reasonAgainst(u"run.tif"_qs),
                HasSubstr("\"run.tif\" is not the name of a recording: expected a name that"));
    EXPECT_THAT(reasonAgainst(u"##/run.png"_qs), HasSubstr("is not the name of a recording"));
    EXPECT_THAT(
        reasonAgainst(u"f-#.ome.tif"_qs),
        HasSubstr("\"f-#.ome.tif\" is one file with all frames: expected a name without #"));
    EXPECT_THAT(reasonAgainst(u"f-#.ome.zarr"_qs), HasSubstr("is one folder with all frames"));
    EXPECT_THAT(reasonAgainst(u"f-#-#.png"_qs), HasSubstr("\"f-#-#.png\" is not a pattern"));
    EXPECT_THAT(reasonAgainst(u"f-#.jpg"_qs), HasSubstr("is not the name of a picture file"));
}
