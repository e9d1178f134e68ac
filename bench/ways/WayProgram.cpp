// SPDX-License-Identifier: MIT
#include <ways/WayProgram.h>

#include <ways/WayArrival.h>

#include <chrono>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int patienceMs = 20'000;

} // namespace

WayProgram::WayProgram(const Way& way, WayProcess::Memory memory)
    : m_name(way.name)
    , m_arrival(way.arrival)
    , m_process(way, memory) {
    if (readReply() != StubRemote::ready)
        throw std::runtime_error(m_name + ": its camera did not start");
}

double WayProgram::pass(const StubRemote::Request& frame) {
    if (::send(m_process.connection(), &frame, sizeof frame, MSG_NOSIGNAL) != sizeof frame)
        throw std::runtime_error(m_name + " has ended");
    const std::size_t size =
        std::size_t(frame.width) * std::size_t(frame.height) * std::size_t(frame.bits) / 8;
    // Of a program that rests, only the reply says that it has begun.
    const bool isReplyFirst = m_arrival == Way::Arrival::Rests;
    StubRemote::Reply sent = isReplyFirst ? readReply() : 0;
    const std::int64_t arrived = waitForArrival(size);
    if (!isReplyFirst)
        sent = readReply();
    if (sent == StubRemote::failed)
        throw std::runtime_error(m_name + ": its camera does not stream");
    m_process.releaseFiles();
    return double(arrived - sent) / 1e3;
}

std::int64_t WayProgram::waitForArrival(std::size_t size) const {
    switch (m_arrival) {
    case Way::Arrival::Reports:
        return readReport();
    case Way::Arrival::Pixels:
        return discardPixels(size);
    case Way::Arrival::Rests:
        break;
    }
    return waitForRest();
}

std::int64_t WayProgram::readReport() const {
    waitUntilReadable(m_process.output());
    WayArrival::Time time = 0;
    if (::read(m_process.output(), &time, sizeof time) != sizeof time)
        throw std::runtime_error(m_name + " has ended");
    return time;
}

/// Without a copy: the pages of the pipe are given back as they are.
std::int64_t WayProgram::discardPixels(std::size_t size) const {
    static const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    while (size > 0) {
        waitUntilReadable(m_process.output());
        const ssize_t taken =
            ::splice(m_process.output(), nullptr, nowhere, nullptr, size, SPLICE_F_MOVE);
        if (taken <= 0)
            throw std::runtime_error(m_name + " has ended");
        size -= std::size_t(taken);
    }
    return WayArrival::now();
}

std::int64_t WayProgram::waitForRest() const {
    using namespace std::chrono_literals;
    constexpr std::int64_t restNs = 4'000'000;
    const std::int64_t began = WayArrival::now();
    std::int64_t since = began;
    for (double before = m_process.cpuMs(); WayArrival::now() - since < restNs;) {
        std::this_thread::sleep_for(200us);
        // One that has ended uses no time either.
        if (!m_process.isRunning())
            throw std::runtime_error(m_name + " has ended");
        if (WayArrival::now() - began > std::int64_t(patienceMs) * 1'000'000)
            throw std::runtime_error(m_name + " does not come to rest");
        const double now = m_process.cpuMs();
        if (now != before || m_process.hasWork())
            since = WayArrival::now();
        before = now;
    }
    return since;
}

StubRemote::Reply WayProgram::readReply() const {
    waitUntilReadable(m_process.connection());
    StubRemote::Reply reply = 0;
    if (::recv(m_process.connection(), &reply, sizeof reply, 0) != sizeof reply)
        throw std::runtime_error(m_name + " has ended");
    return reply;
}

void WayProgram::waitUntilReadable(int file) const {
    pollfd one{file, POLLIN, 0};
    if (::poll(&one, 1, patienceMs) != 1)
        throw std::runtime_error(m_name + " does not go on");
}
