// SPDX-License-Identifier: MIT
#include <apps/common/system/PSystemMemory.h>

#include <support/FolderTest.h>
#include <support/MadeSystem.h>

namespace {

class PSystemMemoryTest : public FolderTest {
protected:
    MadeSystem made{path(QString())};
    const PSystemTree tree{path(QString())};
};

TEST_F(PSystemMemoryTest, is_what_programs_can_have) {
    made.setAvailableMemory(2048 * 1024);
    EXPECT_EQ(PSystemMemory::available(tree), std::optional<quint64>(2048 * 1024));
}

TEST_F(PSystemMemoryTest, is_unknown_where_the_system_does_not_report_it) {
    made.write(u"proc/meminfo"_qs, "MemTotal: 32000000 kB\nXMemAvailable: 5 kB\n");
    EXPECT_EQ(PSystemMemory::available(tree), std::nullopt);
}

} // namespace
