// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PTriggerControl.h>

#include <QVariant>

#include <chrono>
#include <memory>
#include <optional>

class PPythonSession;

/// A triggered run of an open camera, which is in live capture again afterwards. Throws
/// PPythonError. The thread of PPythonHost.
class PPythonTrigger {
public:
    /// What starts the exposures, and how long they are.
    struct Plan {
        bool external = false;                             ///< signals at the camera's input
        std::optional<std::chrono::microseconds> exposure; ///< none: as the camera has it
    };

    /// Starts a triggered run: frames by software, or with `external` by the signals at the
    /// camera's input, one for each frame. `exposure` is in milliseconds; without it, as the camera
    /// has it for triggered frames. Afterwards the camera is in live capture again.
    /// @internal Puts the camera into triggered capture, before its stream starts.
    PPythonTrigger(std::shared_ptr<PPythonSession> session, const Plan& plan,
                   std::optional<quint64> frames);

    /// Fires, with a software trigger; once the stream has started.
    void begin();
    /// Ends the run. Before the stream stops, as the next; neither throws.
    void end() noexcept;
    /// Puts the camera back into the capture that it was in.
    void restore() noexcept;
    std::chrono::milliseconds exposure() const;

private:
    std::shared_ptr<PPythonSession> m_session;
    std::unique_ptr<PTriggerControl> m_control;
    const Plan m_plan;
    const int m_frames;
    QVariant m_before; ///< the composite value with the trigger's settings
};
