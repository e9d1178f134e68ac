// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <system_error>
#include <thread>

/// The made-up camera. It stands for the SDK of a real one and does not use the framework. Any
/// thread, but for startLive() and stopLive(), which are called on one.
class PatternCamera {
public:
    /// What can be set: exposure in microseconds, gain in percent, the others by number.
    enum Setting : unsigned { Resolution, Exposure, Gain, Pattern, Negative };
    static constexpr int minima[] = {0, 100, 100, 0, 0};
    static constexpr int maxima[] = {1, 100'000, 400, 1, 1};
    static constexpr QSize sizes[] = {{640, 480}, {320, 240}}; ///< of the resolutions, in pixels

    ~PatternCamera() { stopLive(); }
    int value(Setting setting) const { return m_values[setting]; }
    /// False, without effect, if the value is out of range.
    bool setValue(Setting setting, int value) {
        const bool isValid = value >= minima[setting] && value <= maxima[setting];
        if (isValid)
            m_values[setting] = value;
        return isValid;
    }
    /// Calls a function, which must not throw, on the camera's own thread for each new picture.
    bool startLive(const std::function<void()>& pictureReady) {
        stopLive();
        m_isLive = true;
        try {
            m_thread = std::thread(&PatternCamera::run, this, pictureReady);
        } catch (const std::system_error&) {
            m_isLive = false; // the system has no thread left
        }
        return m_isLive;
    }
    /// When it returns, the function is not running and will not be called.
    bool stopLive() {
        m_isLive = false;
        if (m_thread.joinable())
            m_thread.join();
        return true;
    }
    /// Writes the present picture: rows of three bytes a pixel, blue first.
    void read(const QSize& size, unsigned char* pixels) const {
        const int width = size.width(), height = size.height(), step = m_step * width / 320;
        const int lit = std::min(m_values[Exposure] * m_values[Gain] / 10'000, 255);
        const int mask = m_values[Negative] == 0 ? 0 : 255;
        for (int i = 0; i < width * height; ++i) {
            const int bar = (i + step) % width * 8 / width;
            const int tile = (bar + i / width * 6 / height) % 2;
            const int bits = m_values[Pattern] == 0 ? 7 - bar : 7 * tile;
            for (const int colour : {1, 4, 2}) // the bits of blue, green and red
                *pixels++ = static_cast<unsigned char>(((bits & colour) != 0 ? lit : 0) ^ mask);
        }
    }

private:
    void run(const std::function<void()>& pictureReady) {
        while (m_isLive) {
            m_step = (m_step + 1) % 320; // the picture moves
            pictureReady();
            const std::chrono::microseconds time(std::max<int>(m_values[Exposure], 20'000));
            std::this_thread::sleep_for(time);
        }
    }

    std::atomic<int> m_values[5] = {0, 20'000, 100, 0, 0};
    std::atomic<int> m_step = 0;
    std::atomic<bool> m_isLive = false;
    std::thread m_thread;
};
