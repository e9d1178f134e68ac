// SPDX-License-Identifier: MIT
#include <toupcam/trace/record/PTraceRecorder.h>

#include <toupcam/trace/format/PTraceFrame.h>

#include <dlfcn.h>

namespace {

/// The number of this thread, in the order in which threads came here first.
int threadNumber() {
    static std::atomic<int> count{0};
    thread_local const int number = ++count;
    return number;
}

} // namespace

PTraceRecorder& PTraceRecorder::instance() {
    static auto* const recorder = new PTraceRecorder;
    return *recorder;
}

QString PTraceRecorder::start(const QByteArray& library, const QByteArray& file,
                              const QJsonObject& header, bool wholeFrames) {
    if (m_library != nullptr)
        return u"a trace is being written already"_qs;
    void* const loaded = dlopen(library.constData(), RTLD_NOW | RTLD_LOCAL);
    if (loaded == nullptr)
        return QString::fromLocal8Bit(dlerror());
    QJsonObject whole = header;
    whole.insert(u"trace"_qs, 1);
    whole.insert(u"frames"_qs, wholeFrames ? u"whole"_qs : u"checksum"_qs);
    m_start = std::chrono::steady_clock::now();
    const QString failure = m_file.create(file, whole, wholeFrames);
    if (failure.isEmpty())
        m_library = loaded;
    return failure;
}

void* PTraceRecorder::find(const char* function) const {
    return m_library == nullptr ? nullptr : dlsym(m_library, function);
}

QJsonObject PTraceRecorder::makeLine(const QString& kind, quint64 number,
                                     const QString& name) const {
    using namespace std::chrono;
    const auto at = duration_cast<microseconds>(steady_clock::now() - m_start);
    return {{u"at"_qs, qint64(at.count())},
            {u"kind"_qs, kind},
            {u"name"_qs, name},
            {u"number"_qs, qint64(number)},
            {u"thread"_qs, u"t%1"_qs.arg(threadNumber())}};
}

quint64 PTraceRecorder::begin(Kind kind, const QString& name, const QJsonObject& in) {
    const bool isCall = kind == Kind::Call;
    const quint64 number = ++(isCall ? m_calls : m_callbacks);
    QJsonObject line = makeLine(isCall ? u"call"_qs : u"callback"_qs, number, name);
    line.insert(u"in"_qs, in);
    m_file.append(line);
    return number;
}

void PTraceRecorder::end(Kind kind, quint64 number, const QString& name, const QJsonObject& out,
                         const QJsonValue& result) {
    const bool isCall = kind == Kind::Call;
    QJsonObject line = makeLine(isCall ? u"return"_qs : u"done"_qs, number, name);
    if (isCall)
        line.insert(u"out"_qs, out);
    if (!result.isUndefined())
        line.insert(u"result"_qs, result);
    m_file.append(line);
}

int PTraceRecorder::addHandle(HToupcam handle) {
    if (handle == nullptr)
        return 0;
    const std::lock_guard lock(m_mutex);
    m_announced.erase(handle);
    return m_handles[handle] = ++m_opened;
}

int PTraceRecorder::findHandle(HToupcam handle) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_handles.find(handle);
    return found == m_handles.end() ? 0 : found->second;
}

QJsonValue PTraceRecorder::describeFrame(const void* data, std::size_t bytes) {
    if (data == nullptr)
        return QJsonValue::Null;
    if (bytes == 0)
        return QJsonObject();
    QJsonObject frame{{u"bytes"_qs, qint64(bytes)},
                      {u"crc32"_qs, PTraceFrame::checksum(data, bytes)}};
    if (m_file.hasFrames())
        frame.insert(u"offset"_qs, m_file.appendFrame(data, bytes));
    return frame;
}

void PTraceRecorder::announceFrame(HToupcam handle, const ToupcamFrameInfoV2& info) {
    const std::lock_guard lock(m_mutex);
    m_announced[handle] = info;
}

std::size_t PTraceRecorder::pulledBytes(HToupcam handle, const ToupcamFrameInfoV2& info,
                                        int bits) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_announced.find(handle);
    const bool isAnnounced = found != m_announced.end() && found->second.width == info.width &&
                             found->second.height == info.height;
    return isAnnounced ? PTraceFrame::pulledBytes(info, bits) : 0;
}
