// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QString>

class PCameraSdk;

/// The trace of a program: all calls of the plugins to the SDK, and its callbacks, in a file. A
/// library between the two writes it, which is loaded only for this. The main thread.
class PSdkTrace {
public:
    /// Where it is written to.
    struct Target {
        QString file;
        bool wholeFrames = false; ///< also the pixels of all frames, in a file beside it
    };

    /// Creates the file and points the plugins to the library that records. Once in a process,
    /// after the SDK and before the plugins are loaded. Fails with the file and the reason; an
    /// existing file is never replaced.
    PStatus start(const PCameraSdk& sdk, const Target& target);
    /// Fails, with the reason, if the file does not have everything up to now. Succeeds if no trace
    /// was started.
    PStatus check() const;

private:
    void* m_library = nullptr; ///< null: not started
    QString m_file;
};
