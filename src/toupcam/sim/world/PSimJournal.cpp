// SPDX-License-Identifier: MIT
#include <toupcam/sim/world/PSimJournal.h>

#include <cstdio>
#include <utility>

void PSimJournal::copyToFile(const std::string& path) {
    const std::lock_guard lock(m_mutex);
    m_file.open(path, std::ios::app);
    if (!m_file)
        std::fprintf(stderr, "simulated SDK: cannot write the journal to \"%s\"\n", path.c_str());
}

void PSimJournal::add(std::string line) {
    const std::lock_guard lock(m_mutex);
    if (m_file.is_open())
        m_file << line << std::endl; // flushed: a crash must not lose the last calls
    m_lines.push_back(std::move(line));
    if (m_lines.size() > maxLines)
        m_lines.pop_front();
}

void PSimJournal::clear() {
    const std::lock_guard lock(m_mutex);
    m_lines.clear();
}

std::size_t PSimJournal::size() const {
    const std::lock_guard lock(m_mutex);
    return m_lines.size();
}

std::string PSimJournal::line(std::size_t index) const {
    const std::lock_guard lock(m_mutex);
    return index < m_lines.size() ? m_lines[index] : std::string();
}
