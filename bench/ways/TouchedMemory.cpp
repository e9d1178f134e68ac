// SPDX-License-Identifier: MIT
#include <ways/TouchedMemory.h>

#include <fstream>
#include <sstream>
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

/// KiB of the pages that were touched and can be written. The pages of a library are those of all
/// programs that use it, and are marked when another one ends.
double readTouched(const std::string& path) {
    std::ifstream file(path);
    bool isWritable = false;
    double touched = 0;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string first;
        std::string second;
        if (!(words >> first >> second))
            continue;
        if (first.back() != ':') // the addresses of the next mapping, and what they are for: "rw-p"
            isWritable = second.size() > 1 && second[1] == 'w';
        else if (isWritable && first == "Referenced:")
            touched += std::stod(second);
    }
    if (touched == 0)
        throw std::runtime_error(path + " has no memory that was touched");
    return touched;
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
    return readTouched(m_folder + "/smaps") * 1024 + writtenBytes() - m_writtenBefore;
}

double TouchedMemory::writtenBytes() const {
    return readNumber(m_folder + "/io", "wchar:");
}
