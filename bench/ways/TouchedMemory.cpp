// SPDX-License-Identifier: MIT
#include <ways/TouchedMemory.h>

#include <fstream>
#include <stdexcept>

namespace {

/// The number after a name at the beginning of a line.
double readNumber(const std::string& path, const std::string& name) {
    std::ifstream file(path);
    for (std::string word; file >> word;) {
        double number = 0;
        if (word == name && file >> number)
            return number;
    }
    throw std::runtime_error(path + " has no " + name);
}

void write(const std::string& path, char what) {
    std::ofstream file(path);
    if (!(file << what << std::flush))
        throw std::runtime_error(path + " could not be written");
}

} // namespace

TouchedMemory::TouchedMemory(pid_t process)
    : m_folder("/proc/" + std::to_string(process)) {
}

void TouchedMemory::begin() {
    // 1 clears the marks that the processor sets; what it has in its own table of pages by then
    // would not be marked again, until 4, which empties that.
    write(m_folder + "/clear_refs", '1');
    write(m_folder + "/clear_refs", '4');
    m_writtenBefore = writtenBytes();
}

double TouchedMemory::bytes() const {
    const double touched = readNumber(m_folder + "/smaps_rollup", "Referenced:") * 1024;
    return touched + writtenBytes() - m_writtenBefore;
}

double TouchedMemory::writtenBytes() const {
    return readNumber(m_folder + "/io", "wchar:");
}
