// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/trace/replay/PReplayRecording.h>

#include <QHash>
#include <QStringList>

#include <map>

/// Which recorded call answers which call of the client. Calls that change something have to come,
/// for each camera, in the recorded order. Calls that only read may come more often or less often
/// than recorded, and get the value that was read at this stage: since the last change or event,
/// and before the next one. Whatever does not fit is a divergence. One thread at a time.
class PReplayAnswers {
public:
    /// Refers to the recording, which has to exist longer.
    explicit PReplayAnswers(const PReplayRecording& recording);

    /// The recorded call that answers this one; null if there is none of this function.
    const PReplayCall* take(const QString& name, int handle, const QJsonObject& in);
    /// True if all changes that were recorded before this line have been made.
    bool hasReached(int line) const;
    /// Notes that the next callback runs now, or is left out because nobody waits for it.
    void passCallback();
    /// The next callback; null after the last.
    const PReplayCallback* nextCallback() const;
    /// True if a callback of this camera (0: the hot-plug callback), recorded before this line, has
    /// not begun yet.
    bool isCallbackLeft(int handle, int line) const;

    /// How many calls have been answered.
    quint64 count() const { return m_count; }
    /// The divergences so far, the first one first, each with its line.
    const QStringList& divergences() const { return m_divergences; }
    /// Adds the recorded changes that the client did not make: after its last call.
    void finish();

private:
    // The calls of one camera that change something: also for those without any.
    struct Changes {
        std::vector<std::size_t> calls;
        std::size_t next = 0;
        int passed = 0; ///< line of the last change or event
    };
    // The calls of one function with the same arguments that only read.
    struct Readings {
        std::vector<std::size_t> calls;
        std::size_t next = 0;
    };

    const PReplayCall* takeChange(const QString& name, int handle, const QJsonObject& in);
    const PReplayCall* takeReading(const QString& name, int handle, const QJsonObject& in);
    const PReplayCall* skipTo(Changes& changes, const QString& name, const QJsonObject& in);
    const PReplayCall* findOther(const QString& name, int handle) const;
    const PReplayCall& call(std::size_t index) const { return m_recording.calls[index]; }
    int nextLine(int handle) const;
    void diverge(int line, const QString& text);

    const PReplayRecording& m_recording;
    std::map<int, Changes> m_changes;
    QHash<QByteArray, Readings> m_readings;
    std::size_t m_nextCallback = 0;
    quint64 m_count = 0;
    QStringList m_divergences;
};
