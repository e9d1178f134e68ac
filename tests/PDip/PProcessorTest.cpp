// SPDX-License-Identifier: MIT
#include <PDip/PProcessor.h>

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace {

/// The value of a line of /proc/cpuinfo, of the first processor; empty if the system has none.
std::string cpuInfo(const std::string& name) {
    std::ifstream file("/proc/cpuinfo");
    std::string line;
    while (std::getline(file, line)) {
        if (line.rfind(name, 0) == 0)
            return line.substr(line.find(':') + 1) + ' ';
    }
    return {};
}

} // namespace

TEST(PProcessor, has_the_instructions_that_the_system_lists) {
    const std::string flags = cpuInfo("flags");
    EXPECT_EQ(PProcessor::hasAvx2(), flags.find(" avx2 ") != std::string::npos) << flags;
}

TEST(PProcessor, stops_reading_at_pages_if_it_is_one_of_intel) {
    const std::string vendor = cpuInfo("vendor_id");
    EXPECT_EQ(PProcessor::stopsReadingAtPages(), vendor == " GenuineIntel ") << vendor;
}
