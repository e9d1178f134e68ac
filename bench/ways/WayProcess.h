// SPDX-License-Identifier: MIT
#pragma once

#include <ways/Way.h>
#include <ways/WayFolders.h>

#include <optional>

#include <sys/types.h>

/// The process of a way, with the stub SDK in it: it is ended with this object. One thread.
class WayProcess {
public:
    /// What it does with memory that it no longer needs.
    enum class Memory {
        Usual,
        Keeps, ///< it stays with the process, so that TouchedMemory sees it
    };

    /// Starts it. Throws std::runtime_error if it cannot be started.
    WayProcess(const Way& way, Memory memory);
    ~WayProcess();
    WayProcess(const WayProcess&) = delete;
    WayProcess& operator=(const WayProcess&) = delete;

    pid_t id() const { return m_id; }
    /// The descriptors of the connection with the stub SDK in it, and of its standard output.
    int connection() const { return m_connection; }
    int output() const { return m_output; }

    /// Milliseconds of processor time that it has had, all threads. Throws std::runtime_error if it
    /// has ended.
    double cpuMs() const;
    /// Whether it has not ended.
    bool isRunning() const;
    /// Whether the system would run one of its threads if it could, or one waits for a disk.
    bool hasWork() const;
    /// Gives the memory of its files back, see WayFolders::Scratch.
    void releaseFiles() const;

private:
    std::optional<WayFolders::Scratch> m_folder; ///< for its files
    pid_t m_id = 0;
    int m_connection = -1;
    int m_output = -1;
};
