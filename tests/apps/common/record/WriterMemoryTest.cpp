// SPDX-License-Identifier: MIT
// Writers of recordings that get no memory, at each place where they ask for some.
#include <apps/common/ome/POmeStackWriter.h>
#include <apps/common/zarr/PZarrWriter.h>

#include <apps/common/RefusedMemory.h>
#include <apps/common/TestFrames.h>
#include <apps/common/reading/OmeXml.h>
#include <apps/common/reading/TiffReadBack.h>
#include <apps/common/reading/ZarrReadBack.h>

#include <PCore/work/PGuardedCall.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <memory>

namespace {

using namespace std::chrono_literals;

constexpr int framesBefore = 4; // the next one makes the list of planes grow

class WriterMemory : public FolderTest, public WithRow<const char*> {
public:
    static std::string toRowName(const char* const& row) { return row; }

protected:
    bool isStack() const { return QByteArray(GetParam()) == "stack"; }
    /// Another recording, which has frames.
    std::unique_ptr<PFrameWriter> makeWriter() {
        ++m_recordings;
        const PCameraIdentity camera{u"Small-S0001"_qs, u"Small"_qs, u"S0001"_qs, true};
        file = path(u"run%1%2"_qs.arg(QString::number(m_recordings),
                                      isStack() ? u".ome.tif"_qs : u".ome.zarr"_qs));
        std::unique_ptr<PFrameWriter> writer;
        if (isStack()) {
            writer = std::make_unique<POmeStackWriter>(POmeStackWriter::Options{
                file, camera, {}, std::nullopt, std::nullopt, std::nullopt});
        } else {
            writer = std::make_unique<PZarrWriter>(
                PZarrWriter::Options{file, camera, {}, std::nullopt, std::nullopt, false});
        }
        for (int i = 1; i <= framesBefore; ++i)
            EXPECT_TRUE(writer->write(frame(i), quint64(i)).isOk());
        return writer;
    }
    static PDeviceFrame frame(int number) {
        return testFrame(quint64(number), 10ms * (number - 1));
    }
    /// Each of the first places is tried, and some of those after them.
    static int next(int granted) { return granted + 1 + granted / 16; }
    int pictures() const {
        return isStack() ? TiffReadBack(file).pictures() : ZarrReadBack(file).shape().at(0);
    }
    OmeXml xml() const {
        return OmeXml(isStack() ? TiffReadBack(file).description() : ZarrReadBack(file).xml());
    }

    QString file; ///< the recording

private:
    int m_recordings = 0;
};

ROW_TEST(WriterMemory, a_frame_without_memory_is_not_in_the_recording) {
    bool isRefused = true;
    int withoutIt = 0;
    for (int granted = 0; isRefused; granted = next(granted)) {
        const auto writer = makeWriter();
        const PDeviceFrame last = frame(framesBefore + 1);
        PStatus status;
        {
            const OneRefusal refusal(granted);
            status = PGuardedCall::status([&] { return writer->write(last, framesBefore + 1); });
            isRefused = OneRefusal::hasHappened();
        }
        EXPECT_TRUE(writer->finish({}).isOk()) << granted;
        const int written = pictures();
        EXPECT_EQ(xml().attribute("Pixels", "SizeT").toInt(), written) << granted;
        // A picture that is in a stack stays there, even if it could not be noted.
        if (!isStack() || status.isOk() || written != framesBefore + 1) {
            EXPECT_EQ(written, framesBefore + (status.isOk() ? 1 : 0)) << granted;
        }
        withoutIt += written == framesBefore ? 1 : 0;
    }
    EXPECT_GT(withoutIt, 5);
}

ROW_TEST(WriterMemory, an_end_without_memory_is_a_failure_that_keeps_all_frames) {
    bool isRefused = true;
    int failures = 0;
    for (int granted = 0; isRefused; granted = next(granted)) {
        const auto writer = makeWriter();
        PStatus status;
        {
            const OneRefusal refusal(granted);
            EXPECT_NO_THROW(status = writer->finish({})) << granted;
            isRefused = OneRefusal::hasHappened();
        }
        failures += status.isOk() ? 0 : 1;
        EXPECT_TRUE(status.isOk() || status.reason().contains(file)) << granted;
        EXPECT_EQ(pictures(), framesBefore) << granted;
        EXPECT_EQ(xml().attribute("Pixels", "SizeT").toInt(), framesBefore) << granted;
    }
    EXPECT_GT(failures, 0);
}

ROWS(Formats, WriterMemory, "stack", "zarr");

} // namespace
