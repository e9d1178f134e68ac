// SPDX-License-Identifier: MIT
#include <apps/common/crash/PCrashWriter.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QFile>

#include <functional>
#include <limits>

namespace {

class PCrashWriterTest : public FolderTest {
protected:
    /// What is in a file after this was written to it.
    QByteArray written(const std::function<void(PCrashWriter&)>& write) const {
        QFile file(path(u"report"_qs));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        PCrashWriter writer(file.handle());
        write(writer);
        return readFile(file.fileName());
    }
};

TEST_F(PCrashWriterTest, texts_and_numbers_are_written_in_their_order) {
    EXPECT_EQ(written([](PCrashWriter& writer) { writer << "signal " << 11LL << ", " << -6LL; }),
              "signal 11, -6");
}

TEST_F(PCrashWriterTest, the_numbers_at_the_ends_of_the_range_are_complete) {
    using Limits = std::numeric_limits<long long>;
    EXPECT_EQ(written([](PCrashWriter& writer) {
                  writer << Limits::min() << " " << 0LL << " " << Limits::max();
              }),
              "-9223372036854775808 0 9223372036854775807");
}

TEST_F(PCrashWriterTest, an_address_is_hexadecimal) {
    const void* const address = reinterpret_cast<const void*>(0xfedcba9876543210);
    EXPECT_EQ(written([&](PCrashWriter& writer) { writer << address; }), "0xfedcba9876543210");
}

TEST_F(PCrashWriterTest, no_text_and_no_bytes_write_nothing) {
    EXPECT_EQ(written([](PCrashWriter& writer) {
                  writer << static_cast<const char*>(nullptr);
                  writer.write("text", 0);
              }),
              "");
}

TEST_F(PCrashWriterTest, a_closed_file_is_no_reason_to_stop) {
    PCrashWriter writer(-1);
    writer << "nowhere" << 1LL; // returns
    EXPECT_EQ(writer.descriptor(), -1);
}

} // namespace
