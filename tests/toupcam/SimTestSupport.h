// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/api/toupcamsim.h>

#include <support/RowTest.h>

#include <gtest/gtest.h>

#include <cctype>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/// The timeout of waits, long enough for a busy machine under a sanitizer.
constexpr std::chrono::seconds longestWait{60};

/// Polls a condition for which there is no notification; false on timeout.
inline bool eventually(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + longestWait;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::yield();
    }
    return true;
}

/// The JSON of one camera of a scene.
struct SimCameraText {
    std::string id = "cam";
    unsigned width = 96;
    unsigned height = 64;
    double fps = 200;
    unsigned bits = 24;
    std::string source = R"({"kind": "patches"})";
    std::string extra; ///< further keys, each preceded by a comma

    std::string text() const {
        return R"({"id": ")" + id + R"(", "serial": "S-)" + id.substr(0, 20) +
               R"(", "resolutions": [)" + size(width, height) + ", " + size(width / 2, height / 2) +
               R"(], "bits": )" + std::to_string(bits) + R"(, "source": )" + source + extra + "}";
    }

private:
    std::string size(unsigned w, unsigned h) const {
        return R"({"width": )" + std::to_string(w) + R"(, "height": )" + std::to_string(h) +
               R"(, "fps": )" + std::to_string(fps) + "}";
    }
};

/// The JSON of a scene with these cameras and a fault plan.
inline std::string makeScene(const std::vector<SimCameraText>& cameras,
                             const std::string& faults = "[]") {
    std::string list;
    for (const SimCameraText& camera : cameras)
        list += (list.empty() ? "" : ", ") + camera.text();
    return R"({"cameras": [)" + list + R"(], "faults": )" + faults + "}";
}

/// The name of a row of data, as a part of the test's name.
inline std::string toTestName(std::string words) {
    for (char& c : words)
        c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return words;
}

/// What a fixture derives from to have a row of a table whose name is plain words.
template <typename Row>
class WithSimRow : public WithRow<Row> {
public:
    static std::string toRowName(const Row& row) { return toTestName(row.name); }
};

/// One pushed frame, copied.
struct PushedFrame {
    BITMAPINFOHEADER header{};
    bool isNull = false;
    bool hasHeader = false;
    bool isSnapshot = false;
    std::vector<std::uint8_t> bytes;

    std::size_t stride() const {
        return (std::size_t(header.biWidth) * header.biBitCount + 31) / 32 * 4;
    }
    /// A channel's value.
    int at(int x, int y, int channel) const {
        const std::size_t pixel = header.biBitCount / 8U;
        return bytes[std::size_t(y) * stride() + std::size_t(x) * pixel + std::size_t(channel)];
    }
};

/// The handles that the current test has opened. Only used on the test's own thread.
class OpenHandles {
public:
    static std::vector<HToupcam>& all() {
        static std::vector<HToupcam> handles;
        return handles;
    }
    /// Stops their streams: what callbacks use may be destroyed then. A closed one refuses.
    static void stop() {
        for (const HToupcam handle : all())
            Toupcam_Stop(handle);
    }
    static void close() {
        for (const HToupcam handle : all())
            Toupcam_Close(handle);
        all().clear();
    }
};

/// A client's data callback that stores what is pushed, up to `keep` frames.
class FrameLog {
public:
    explicit FrameLog(std::size_t keep = 1000)
        : m_keep(keep) {}
    ~FrameLog() { OpenHandles::stop(); }

    static void onData(const void* data, const BITMAPINFOHEADER* header, int isSnapshot,
                       void* context) {
        static_cast<FrameLog*>(context)->add(data, header, isSnapshot);
    }

    /// Called in every callback, before the frame is stored.
    std::function<void()> inside;

    bool waitFor(std::size_t count) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, longestWait, [&] { return m_total >= count; });
    }
    bool waitForStill() {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, longestWait, [&] { return m_stills > 0; });
    }
    bool waitForLoss() {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, longestWait, [&] { return m_losses > 0; });
    }
    std::size_t total() const {
        const std::lock_guard lock(m_mutex);
        return m_total;
    }
    unsigned losses() const {
        const std::lock_guard lock(m_mutex);
        return m_losses;
    }
    std::vector<PushedFrame> frames() const {
        const std::lock_guard lock(m_mutex);
        return m_frames;
    }
    PushedFrame last() const {
        const std::lock_guard lock(m_mutex);
        return m_last;
    }

private:
    void add(const void* data, const BITMAPINFOHEADER* header, int isSnapshot) {
        if (inside)
            inside();
        PushedFrame frame;
        frame.isNull = data == nullptr;
        frame.hasHeader = header != nullptr;
        frame.isSnapshot = isSnapshot != 0;
        if (header)
            frame.header = *header;
        if (data && header)
            frame.bytes.assign(static_cast<const std::uint8_t*>(data),
                               static_cast<const std::uint8_t*>(data) + header->biSizeImage);
        const std::lock_guard lock(m_mutex);
        ++m_total;
        m_stills += frame.isSnapshot ? 1 : 0;
        m_losses += frame.isNull ? 1 : 0;
        m_last = frame;
        if (m_frames.size() < m_keep)
            m_frames.push_back(std::move(frame));
        m_changed.notify_all();
    }

    const std::size_t m_keep;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<PushedFrame> m_frames;
    PushedFrame m_last;
    std::size_t m_total = 0;
    unsigned m_stills = 0;
    unsigned m_losses = 0;
};

/// A client's data callback that does nothing.
inline void ignoreData(const void*, const BITMAPINFOHEADER*, int, void*) {
}

/// Counts calls of a callback whose only argument is a context.
class CallCounter {
public:
    CallCounter() = default;
    ~CallCounter() {
        Toupcam_HotPlug(nullptr, nullptr);
        OpenHandles::stop();
    }
    static void onCall(void* context) { static_cast<CallCounter*>(context)->add(); }

    /// Called in every callback, before it is counted.
    std::function<void()> inside;

    unsigned count() const {
        const std::lock_guard lock(m_mutex);
        return m_count;
    }
    bool waitFor(unsigned count) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, longestWait, [&] { return m_count >= count; });
    }

private:
    void add() {
        if (inside)
            inside();
        const std::lock_guard lock(m_mutex);
        ++m_count;
        m_changed.notify_all();
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    unsigned m_count = 0;
};

/// A client's event callback that stores the codes.
class EventLog {
public:
    EventLog() = default;
    ~EventLog() { OpenHandles::stop(); }
    static void onEvent(unsigned code, void* context) {
        static_cast<EventLog*>(context)->add(code);
    }

    /// Called in every callback, before the code is stored.
    std::function<void(unsigned)> inside;

    bool waitFor(unsigned code, std::size_t times = 1) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, longestWait, [&] { return countUnlocked(code) >= times; });
    }
    std::size_t count(unsigned code) const {
        const std::lock_guard lock(m_mutex);
        return countUnlocked(code);
    }

private:
    std::size_t countUnlocked(unsigned code) const {
        std::size_t count = 0;
        for (const unsigned seen : m_codes)
            count += seen == code ? 1 : 0;
        return count;
    }
    void add(unsigned code) {
        if (inside)
            inside(code);
        const std::lock_guard lock(m_mutex);
        m_codes.push_back(code);
        m_changed.notify_all();
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<unsigned> m_codes;
};

/// Blocks threads that pass until it is opened.
class Gate {
public:
    void pass() {
        std::unique_lock lock(m_mutex);
        ++m_waiting;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_open; });
    }
    void open() {
        const std::lock_guard lock(m_mutex);
        m_open = true;
        m_changed.notify_all();
    }
    bool waitForSomebody() {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, longestWait, [this] { return m_waiting > 0; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_open = false;
    unsigned m_waiting = 0;
};

struct FrameCounts {
    unsigned long long produced = 0;
    unsigned long long delivered = 0;
};

inline FrameCounts readCounts(const std::string& id = "cam") {
    FrameCounts counts;
    EXPECT_EQ(ToupcamSim_frameCount(id.c_str(), &counts.produced, &counts.delivered), 1);
    return counts;
}

/// Each test begins with the built-in scene, an empty journal and no faults. At its end, every
/// handle that it opened is closed and no hot-plug callback is registered.
class SimTest : public ::testing::Test {
protected:
    SimTest() { ToupcamSim_reset(); }
    ~SimTest() override {
        Toupcam_HotPlug(nullptr, nullptr);
        OpenHandles::close();
    }

    void load(const std::string& scene) {
        const char* const complaint = ToupcamSim_loadScene(scene.c_str());
        ASSERT_EQ(complaint, nullptr) << complaint;
    }
    HToupcam open(const std::string& id = "cam") {
        const HToupcam handle = Toupcam_Open(id.c_str());
        EXPECT_NE(handle, nullptr) << "cannot open " << id;
        OpenHandles::all().push_back(handle);
        return handle;
    }
    /// Loads a scene of one camera and opens it.
    HToupcam openOnly(const SimCameraText& camera) {
        load(makeScene({camera}));
        return open(camera.id);
    }
};
