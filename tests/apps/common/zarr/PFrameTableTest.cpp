// SPDX-License-Identifier: MIT
#include <apps/common/zarr/PFrameTable.h>

#include <apps/common/TestFrames.h>

#include <support/FileSizeLimit.h>
#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <cerrno>

namespace {

using namespace std::chrono_literals;

const QByteArray tableHeading = "index,frame,arrived_utc,delta_t_s,exposure_ms\n";
const QByteArray firstTableLine = "0,7,2026-01-01T00:00:00.000Z,0,12.5\n";

class FrameTable : public FolderTest {
protected:
    const QString file = path(u"frames.csv"_qs);
    PFrameTable table;

    void SetUp() override {
        ASSERT_TRUE(table.create(file).isOk());
        ASSERT_TRUE(table.append(0, *testFrame(7, 0ms).stamp, 0, 12.5).isOk());
    }
};

TEST_F(FrameTable, a_line_is_in_the_file_as_soon_as_it_is_added) {
    EXPECT_EQ(readFile(file), tableHeading + firstTableLine);
    EXPECT_EQ(table.rows(), 1U);
}

TEST_F(FrameTable, an_unknown_exposure_is_an_empty_field) {
    ASSERT_TRUE(table.append(1, *testFrame(9, 250ms).stamp, 0.25, std::nullopt).isOk());
    EXPECT_EQ(readFile(file),
              tableHeading + firstTableLine + "1,9,2026-01-01T00:00:00.250Z,0.25,\n");
}

TEST_F(FrameTable, a_frame_that_was_removed_is_replaced_by_the_next) {
    ASSERT_TRUE(table.append(1, *testFrame(8, 10ms).stamp, 0.01, 1).isOk());
    table.removeLast();
    EXPECT_EQ(readFile(file), tableHeading + firstTableLine);
    EXPECT_EQ(table.rows(), 1U);
    ASSERT_TRUE(table.append(1, *testFrame(9, 20ms).stamp, 0.02, 1).isOk());
    EXPECT_EQ(readFile(file),
              tableHeading + firstTableLine + "1,9,2026-01-01T00:00:00.020Z,0.02,1\n");
}

TEST_F(FrameTable, a_line_that_does_not_fit_on_the_disk_leaves_no_part_of_it) {
    {
        const FileSizeLimit limit(rlim_t(tableHeading.size() + firstTableLine.size() + 10));
        const PStatus status = table.append(1, *testFrame(8, 10ms).stamp, 0.01, 1);
        EXPECT_EQ(status.reason(), qt_error_string(EFBIG));
    }
    EXPECT_EQ(readFile(file), tableHeading + firstTableLine);
    EXPECT_EQ(table.rows(), 1U);
}

TEST_F(FrameTable, a_file_that_exists_is_left_alone) {
    const QString other = path(u"other"_qs);
    writeFile(other, "mine");
    EXPECT_FALSE(PFrameTable().create(other).isOk());
    EXPECT_EQ(readFile(other), QByteArray("mine"));
}

} // namespace
