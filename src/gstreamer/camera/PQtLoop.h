// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

/// The thread on which everything of Qt runs: that of the program's QCoreApplication if it has one,
/// else a thread with an application of its own, made when it is first needed. It is never ended;
/// when the process exits, the cameras are closed and it stands still. Any thread, but not in
/// plugin_init(): a program that only scans plugins must get no application.
class PQtLoop {
public:
    using Work = std::function<void()>;

    /// The default timeout of a call: longer than any camera takes that still answers.
    static constexpr std::chrono::seconds patience{20};

    /// Runs work on Qt's thread, at once if this is that thread, and waits until it has run. False
    /// if it had not ended after the timeout: then it does not begin any more, but it may still be
    /// running, so it must own what it uses. False at once if the system starts no thread for Qt,
    /// which is printed. An exception ends the work.
    static bool call(const Work& work, std::chrono::milliseconds timeout = patience);

    /// The same for work with a result; empty if it had not ended after the timeout.
    template <typename Result>
    static std::optional<Result> ask(std::function<Result()> work,
                                     std::chrono::milliseconds timeout = patience) {
        const auto result = std::make_shared<std::optional<Result>>();
        if (!call([result, work = std::move(work)] { *result = work(); }, timeout))
            return std::nullopt; // the work may be writing its result now
        return std::move(*result);
    }

    /// Runs work on Qt's thread, after what was given to it before, and does not wait; nothing if
    /// the system starts no thread for Qt.
    static void post(const Work& work);

    /// Work that runs on Qt's thread before the application ends, or at exit of a process in which
    /// it has none. The last one given counts.
    static void setFarewell(const Work& work);
};
