// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

/// Where the programs of this build folder are, and where they write. Any thread.
namespace WayFolders {

/// What stands for the folder for files in a command.
constexpr char placeholder[] = "FOLDER/";

/// The folder of this program.
std::filesystem::path bin();

/// A folder for the files of one program, which goes with them. In the folder that this program is
/// run from: the one for temporary files may be in memory.
class Scratch {
public:
    /// Throws std::runtime_error if there cannot be one.
    Scratch();
    ~Scratch();
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    /// Gives the memory of what was written to large files back to the system, but for a MiB at
    /// either end, where a writer looks things up. The next frames take it again: a virtual machine
    /// gets what it has not used yet from its host, page by page, and that would be measured.
    void release() const;

private:
    std::filesystem::path m_path;
};

} // namespace WayFolders
