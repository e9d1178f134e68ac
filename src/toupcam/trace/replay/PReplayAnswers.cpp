// SPDX-License-Identifier: MIT
#include <toupcam/trace/replay/PReplayAnswers.h>

#include <toupcam/trace/replay/PReplaySignature.h>

#include <QJsonDocument>

#include <algorithm>
#include <limits>

namespace {

constexpr int noLine = std::numeric_limits<int>::max();

QByteArray toKey(const QString& name, const QJsonObject& in) {
    return name.toUtf8() + QJsonDocument(in).toJson(QJsonDocument::Compact);
}

/// Whether a camera is affected; all are by plugging.
bool isOf(const PReplayCallback& callback, int handle) {
    return callback.kind == PReplayCallback::Kind::HotPlug || callback.handle == handle;
}

/// Frames change nothing that can be read.
bool isEvent(const PReplayCallback& callback) {
    return callback.kind != PReplayCallback::Kind::Data || !callback.pixels;
}

} // namespace

PReplayAnswers::PReplayAnswers(const PReplayRecording& recording)
    : m_recording(recording) {
    for (std::size_t i = 0; i < recording.calls.size(); ++i) {
        Changes& changes = m_changes[call(i).handle];
        if (call(i).isChange)
            changes.calls.push_back(i);
        else
            m_readings[toKey(call(i).name, call(i).in)].calls.push_back(i);
    }
}

const PReplayCall* PReplayAnswers::take(const QString& name, int handle, const QJsonObject& in) {
    ++m_count;
    const PReplaySignature* const signature = PReplaySignature::find(name);
    return signature != nullptr && signature->isChange ? takeChange(name, handle, in)
                                                       : takeReading(name, handle, in);
}

const PReplayCall* PReplayAnswers::takeChange(const QString& name, int handle,
                                              const QJsonObject& in) {
    Changes& changes = m_changes[handle];
    if (const PReplayCall* const found = skipTo(changes, name, in)) {
        changes.passed = found->line;
        return found;
    }
    const QString text = PReplayCall::toText(name, in);
    if (changes.next < changes.calls.size()) {
        const PReplayCall& expected = call(changes.calls[changes.next]);
        diverge(expected.line, u"%1 was called, but %2 was recorded"_qs.arg(
                                   text, PReplayCall::toText(expected.name, expected.in)));
    } else {
        diverge(changes.passed, u"%1 was called after it, and was not recorded"_qs.arg(text));
    }
    return findOther(name, handle);
}

/// The next change that is this call; those before it were not made.
const PReplayCall* PReplayAnswers::skipTo(Changes& changes, const QString& name,
                                          const QJsonObject& in) {
    const auto begin = changes.calls.begin() + std::ptrdiff_t(changes.next);
    const auto found = std::find_if(begin, changes.calls.end(), [&](std::size_t index) {
        return call(index).name == name && call(index).in == in;
    });
    if (found == changes.calls.end())
        return nullptr;
    for (auto left = begin; left != found; ++left) {
        diverge(call(*left).line, PReplayCall::toText(call(*left).name, call(*left).in) +
                                      u" was recorded, but was not called"_qs);
    }
    changes.next = std::size_t(found - changes.calls.begin()) + 1;
    return &call(*found);
}

const PReplayCall* PReplayAnswers::takeReading(const QString& name, int handle,
                                               const QJsonObject& in) {
    const int passed = m_changes[handle].passed;
    const auto found = m_readings.find(toKey(name, in));
    if (found == m_readings.end()) {
        diverge(passed, u"%1 was called after it, and was not recorded"_qs.arg(
                            PReplayCall::toText(name, in)));
        return findOther(name, handle);
    }
    const int end = nextLine(handle);
    Readings& readings = *found;
    bool isFound = false;
    while (!isFound && readings.next < readings.calls.size() &&
           call(readings.calls[readings.next]).line < end)
        isFound = call(readings.calls[readings.next++]).line > passed;
    return &call(readings.calls[readings.next == 0 ? 0 : readings.next - 1]);
}

/// For a call that was not recorded: the last one of the same function, else the next one.
const PReplayCall* PReplayAnswers::findOther(const QString& name, int handle) const {
    const PReplayCall* other = nullptr;
    const int end = nextLine(handle);
    for (const PReplayCall& candidate : m_recording.calls) {
        if (candidate.name != name || candidate.handle != handle)
            continue;
        if (other != nullptr && candidate.line >= end)
            break;
        other = &candidate;
    }
    return other;
}

/// The line of what is expected next of a camera, a change or a callback.
int PReplayAnswers::nextLine(int handle) const {
    const auto changes = m_changes.find(handle);
    const bool hasChange =
        changes != m_changes.end() && changes->second.next < changes->second.calls.size();
    const int change = hasChange ? call(changes->second.calls[changes->second.next]).line : noLine;
    const auto& callbacks = m_recording.callbacks;
    const auto callback =
        std::find_if(callbacks.begin() + std::ptrdiff_t(m_nextCallback), callbacks.end(),
                     [handle](const PReplayCallback& next) { return isOf(next, handle); });
    return callback == callbacks.end() ? change : std::min(change, callback->line);
}

bool PReplayAnswers::hasReached(int line) const {
    return std::all_of(m_changes.begin(), m_changes.end(), [&](const auto& entry) {
        const Changes& changes = entry.second;
        return changes.next == changes.calls.size() ||
               call(changes.calls[changes.next]).line > line;
    });
}

const PReplayCallback* PReplayAnswers::nextCallback() const {
    return m_nextCallback < m_recording.callbacks.size() ? &m_recording.callbacks[m_nextCallback]
                                                         : nullptr;
}

void PReplayAnswers::passCallback() {
    const PReplayCallback& passed = m_recording.callbacks[m_nextCallback++];
    if (!isEvent(passed))
        return;
    for (auto& [handle, changes] : m_changes) {
        if (isOf(passed, handle))
            changes.passed = std::max(changes.passed, passed.line);
    }
}

bool PReplayAnswers::isCallbackLeft(int handle, int line) const {
    const auto& callbacks = m_recording.callbacks;
    return std::any_of(
        callbacks.begin() + std::ptrdiff_t(m_nextCallback), callbacks.end(),
        [&](const PReplayCallback& left) { return left.handle == handle && left.line < line; });
}

void PReplayAnswers::finish() {
    for (auto& [handle, changes] : m_changes) {
        for (; changes.next < changes.calls.size(); ++changes.next) {
            const PReplayCall& left = call(changes.calls[changes.next]);
            diverge(left.line, PReplayCall::toText(left.name, left.in) +
                                   u" was recorded, but was not called"_qs);
        }
    }
}

void PReplayAnswers::diverge(int line, const QString& text) {
    m_divergences.append(line == 0 ? text : u"line %1: %2"_qs.arg(QString::number(line), text));
}
