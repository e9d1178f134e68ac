// SPDX-License-Identifier: MIT
#pragma once

#include <ways/WayProcess.h>

#include <stub/StubRemote.h>

#include <cstddef>
#include <cstdint>
#include <string>

/// A program that streams from the stub SDK's camera, and is given one frame at a time. Its
/// functions throw std::runtime_error if it does not do its part. One thread.
class WayProgram {
public:
    /// Starts the program, and waits until its camera streams.
    explicit WayProgram(const Way& way, WayProcess::Memory memory = WayProcess::Memory::Usual);

    /// Sends a frame and waits until it has arrived. Returns the microseconds from the SDK's
    /// callback until then.
    double pass(const StubRemote::Request& frame);
    /// Waits until the process does nothing. Returns the time, as WayArrival has it, when it began
    /// to.
    std::int64_t waitForRest() const;

    const WayProcess& process() const { return m_process; }

private:
    std::int64_t waitForArrival(std::size_t size) const;
    std::int64_t readReport() const;
    std::int64_t discardPixels(std::size_t size) const;
    StubRemote::Reply readReply() const;
    void waitUntilReadable(int file) const;

    const std::string m_name;
    const Way::Arrival m_arrival;
    const WayProcess m_process;
};
