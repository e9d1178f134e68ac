// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PDeviceMode.h>

#include <PCore/PPrintableText.h>

#include <optional>

/// The state of a camera in which a rule is examined. A value; any thread.
struct PCheckState {
    std::optional<PDeviceMode> mode; ///< none: the one that the camera had at first
    bool isStreaming = false;

    /// "mode 0 (640x480), streaming".
    QString toText() const {
        const QString stream = isStreaming ? u"streaming"_qs : u"idle"_qs;
        return mode ? PPrintableText::toLine(u"mode %1 (%2), %3"_qs.arg(
                          QString::fromLatin1(mode->id), mode->name, stream))
                    : stream;
    }

    friend bool operator==(const PCheckState& a, const PCheckState& b) {
        return a.mode == b.mode && a.isStreaming == b.isStreaming;
    }
};
