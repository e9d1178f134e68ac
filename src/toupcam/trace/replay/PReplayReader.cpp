// SPDX-License-Identifier: MIT
#include <toupcam/trace/replay/PReplayReader.h>

#include <toupcam/trace/format/PTraceFrame.h>
#include <toupcam/trace/format/PTraceRecords.h>
#include <toupcam/trace/format/PTraceText.h>
#include <toupcam/trace/replay/PReplaySignature.h>

#include <QBuffer>
#include <QFile>
#include <QFileInfo>

#include <limits>

namespace {

using Kind = PReplayCallback::Kind;

constexpr int formatVersion = 1;
constexpr qint64 mostNumber = qint64(1) << 53; // beyond it JSON's numbers have gaps
constexpr qint64 longestLine = 1 << 20;        // that of a search with many cameras has a quarter

std::optional<Kind> toKind(const QString& name) {
    const QHash<QString, Kind> kinds{{u"hotplug"_qs, Kind::HotPlug},
                                     {u"data"_qs, Kind::Data},
                                     {u"event"_qs, Kind::Event},
                                     {u"exposure"_qs, Kind::Exposure},
                                     {u"temptint"_qs, Kind::TempTint}};
    const auto found = kinds.constFind(name);
    return found == kinds.constEnd() ? std::nullopt : std::optional(*found);
}

qint64 toNumber(const PReplayFields& line) {
    return line.number(u"number"_qs, 1, mostNumber);
}

/// Pixels under this key; nothing for null.
std::optional<PReplayPixels> toPixels(const PReplayFields& fields, const QString& key) {
    if (fields.value(key).isNull())
        return std::nullopt;
    const PReplayFields frame = fields.object(key);
    PReplayPixels pixels;
    if (frame.values().isEmpty())
        return pixels;
    pixels.bytes = std::size_t(frame.number(u"bytes"_qs, 1, qint64(PTraceFrame::mostBytes)));
    const auto checksum = PTraceText::toBits(frame.value(u"crc32"_qs), 8);
    if (!checksum)
        frame.complain(u"crc32: expected 0x and eight hexadecimal digits"_qs);
    pixels.checksum = quint32(*checksum);
    if (frame.values().contains(u"offset"_qs))
        pixels.offset = frame.number(u"offset"_qs, 0, mostNumber);
    return pixels;
}

void readFrame(const PReplayFields& in, PReplayCallback& callback) {
    callback.isSnapshot = in.integer(u"bSnap"_qs) != 0;
    if (!in.value(u"pHeader"_qs).isNull()) {
        BITMAPINFOHEADER header{};
        const QString wrong = PTraceRecords::toHeader(in.object(u"pHeader"_qs).values(), header);
        if (!wrong.isEmpty())
            in.complain(u"pHeader.%1: expected a number that it can be"_qs.arg(wrong));
        callback.header = header;
    }
    callback.pixels = toPixels(in, u"pData"_qs);
    const std::size_t expected = callback.header ? PTraceFrame::pushedBytes(*callback.header) : 0;
    if (callback.pixels && callback.pixels->bytes != expected) {
        in.complain(u"pData has %1 bytes, expected the %2 that pHeader declares"_qs.arg(
            QString::number(callback.pixels->bytes), QString::number(expected)));
    }
}

void checkResult(const PReplayFields& line, const PReplaySignature& signature) {
    const QJsonValue result = line.value(u"result"_qs);
    switch (signature.result) {
    case PReplaySignature::Result::Nothing:
        if (!result.isUndefined())
            line.complain(u"result: expected none from this function"_qs);
        break;
    case PReplaySignature::Result::Count:
        line.number(u"result"_qs, 0, std::numeric_limits<unsigned>::max());
        break;
    case PReplaySignature::Result::Handle:
        if (result.isUndefined() || !PTraceText::toHandle(result))
            line.complain(u"result: expected a handle such as \"h1\", or null"_qs);
        break;
    case PReplaySignature::Result::Code:
        if (!PTraceText::toResult(result))
            line.complain(u"result: expected 0x and eight hexadecimal digits"_qs);
        break;
    }
}

void checkOut(const PReplayFields& out, const PReplaySignature& signature) {
    for (const QString& key : out.values().keys()) {
        const qsizetype index = signature.arguments.indexOf(key);
        if (index < 0 || !signature.canWrite(index, out.value(key)))
            out.complain(u"out.%1 is not what this function writes"_qs.arg(key));
    }
}

} // namespace

PReplayRecording PReplayReader::readFile(const QString& path) {
    // A device or a pipe may have no end.
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile())
        throw PReplayError(0, u"it is not a file, expected a trace"_qs);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw PReplayError(0, u"cannot be read: "_qs + file.errorString());
    PReplayRecording recording = readFrom(file);
    if (file.error() != QFile::NoError)
        throw PReplayError(0, u"cannot be read: "_qs + file.errorString());
    return recording;
}

PReplayRecording PReplayReader::read(const QByteArray& bytes) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return readFrom(buffer);
}

/// Line by line: what is no trace may be larger than memory.
PReplayRecording PReplayReader::readFrom(QIODevice& device) {
    PReplayReader reader;
    QByteArray line = device.readLine(longestLine + 1);
    for (; line.endsWith('\n'); line = device.readLine(longestLine + 1)) {
        line.chop(1);
        reader.readLine(line);
    }
    if (!line.isEmpty() && !device.atEnd()) { // it goes on
        throw PReplayError(
            reader.m_line + 1,
            u"it has more than %1 bytes, expected a JSON object"_qs.arg(longestLine));
    }
    if (reader.m_line == 0)
        throw PReplayError(1, u"it is not complete, expected the header of a trace"_qs);
    if (!line.isEmpty()) {
        reader.m_recording.notice =
            u"line %1 was cut off, and is left out"_qs.arg(reader.m_line + 1);
    }
    return reader.m_recording;
}

void PReplayReader::readLine(const QByteArray& text) {
    const PReplayFields line = PReplayFields::parse(++m_line, text);
    const QString kind = line.text(u"kind"_qs);
    if (m_line == 1)
        readHeader(line);
    else if (kind == u"call"_qs)
        readCall(line);
    else if (kind == u"return"_qs)
        readReturn(line);
    else if (kind == u"callback"_qs)
        readCallback(line);
    else if (kind == u"done"_qs)
        readDone(line);
    else
        line.complain(u"kind is \"%1\", expected call, return, callback or done"_qs.arg(kind));
}

void PReplayReader::readHeader(const PReplayFields& line) {
    const QJsonValue version = line.value(u"trace"_qs);
    if (version.isUndefined())
        line.complain(u"expected the header of a trace, with \"trace\": %1"_qs.arg(formatVersion));
    if (version != formatVersion) {
        line.complain(u"the trace is of version %1, expected version %2"_qs.arg(
            version.toVariant().toString(), QString::number(formatVersion)));
    }
    m_recording.header = line.values();
}

void PReplayReader::readCall(const PReplayFields& line) {
    PReplayCall call;
    call.line = m_line;
    call.at = line.number(u"at"_qs, 0, mostNumber);
    call.name = line.text(u"name"_qs);
    const PReplaySignature* const signature = PReplaySignature::find(call.name);
    if (signature == nullptr)
        line.complain(u"the SDK has no function \"%1\""_qs.arg(call.name));
    const PReplayFields in = line.object(u"in"_qs);
    call.in = in.values();
    call.handle = signature->takesHandle ? in.handle() : 0;
    call.isChange = signature->isChange;
    m_openCalls.insert(toNumber(line), m_recording.calls.size());
    m_recording.calls.push_back(call);
}

void PReplayReader::readReturn(const PReplayFields& line) {
    const auto found = m_openCalls.constFind(toNumber(line));
    if (found == m_openCalls.constEnd())
        line.complain(u"expected the number of a call that has not returned"_qs);
    PReplayCall& call = m_recording.calls[*found];
    if (line.text(u"name"_qs) != call.name) {
        line.complain(
            u"expected the return of %1 on line %2"_qs.arg(call.name, QString::number(call.line)));
    }
    const PReplaySignature* const signature = PReplaySignature::find(call.name);
    const PReplayFields out = line.object(u"out"_qs);
    checkResult(line, *signature);
    checkOut(out, *signature);
    if (out.values().contains(u"pImageData"_qs))
        call.pixels = toPixels(out, u"pImageData"_qs);
    call.out = out.values();
    call.result = line.value(u"result"_qs);
    call.returnLine = m_line;
    m_openCalls.erase(found);
}

void PReplayReader::readCallback(const PReplayFields& line) {
    PReplayCallback callback;
    const QString name = line.text(u"name"_qs);
    const std::optional<Kind> kind = toKind(name);
    if (!kind) {
        line.complain(u"the SDK has no callback \"%1\": expected hotplug, data, event, exposure "
                      "or temptint"_qs.arg(name));
    }
    const PReplayFields in = line.object(u"in"_qs);
    callback.line = m_line;
    callback.at = line.number(u"at"_qs, 0, mostNumber);
    callback.kind = *kind;
    callback.handle = *kind == Kind::HotPlug ? 0 : in.handle();
    if (*kind == Kind::Data)
        readFrame(in, callback);
    if (*kind == Kind::Event)
        callback.event = unsigned(in.number(u"nEvent"_qs, 0, std::numeric_limits<unsigned>::max()));
    if (*kind == Kind::TempTint) {
        callback.temperature = in.integer(u"nTemp"_qs);
        callback.tint = in.integer(u"nTint"_qs);
    }
    m_openCallbacks.insert(toNumber(line), name);
    m_recording.callbacks.push_back(callback);
}

void PReplayReader::readDone(const PReplayFields& line) {
    const QString name = m_openCallbacks.take(toNumber(line));
    if (name.isEmpty() || line.text(u"name"_qs) != name)
        line.complain(u"expected number and name of a callback that has not returned"_qs);
}
