// SPDX-License-Identifier: MIT
#include <toupcam/trace/replay/PReplaySignature.h>

#include <toupcam/trace/format/PTraceArguments.h>
#include <toupcam/trace/format/PTraceRecords.h>

#include <QHash>

#include <array>

namespace {

using Result = PReplaySignature::Result;
using Table = QHash<QString, PReplaySignature>;

// What can be written through an argument, by its type.

template <typename T>
struct Written {
    static bool isPossible(const QJsonValue&) { return false; }
};
template <typename T>
struct Written<T*> {
    static bool isPossible(const QJsonValue& value) {
        if constexpr (std::is_integral_v<T> && !std::is_const_v<T>)
            return value.isDouble() && double(qint64(T(value.toInteger()))) == value.toDouble();
        else
            return false;
    }
};
template <>
struct Written<char*> {
    static bool isPossible(const QJsonValue& value) {
        const auto text = PTraceText::toText(value);
        return text && std::size_t(text->size()) <= PTraceArguments::serialSize;
    }
};
template <>
struct Written<ToupcamDeviceV2*> {
    static bool isPossible(const QJsonValue& value) {
        PTraceRecords::Devices devices;
        return value.isArray() && PTraceRecords::toDevices(value.toArray(), devices).isEmpty();
    }
};
template <>
struct Written<ToupcamFrameInfoV2*> {
    static bool isPossible(const QJsonValue& value) {
        ToupcamFrameInfoV2 info{};
        return value.isObject() && PTraceRecords::toInfo(value.toObject(), info).isEmpty();
    }
};
template <>
struct Written<void*> {
    static bool isPossible(const QJsonValue& value) { return value.isObject(); }
};

Result toResult(HRESULT) {
    return Result::Code;
}
Result toResult(unsigned) {
    return Result::Count;
}
Result toResult(HToupcam) {
    return Result::Handle;
}

bool isReading(const QString& name) {
    return name.contains(u"_get_"_qs) || name.contains(u"_Pull"_qs) || name == u"Toupcam_EnumV2"_qs;
}

template <typename Return, typename... Parameters>
void add(Table& table, const char* name, const char* arguments, Return (*)(Parameters...)) {
    PReplaySignature signature;
    signature.arguments = PTraceArguments::split(arguments);
    signature.takesHandle = (std::is_same_v<Parameters, HToupcam> || ...);
    signature.isChange = !isReading(QString::fromLatin1(name));
    if constexpr (!std::is_void_v<Return>)
        signature.result = toResult(Return{});
    signature.canWrite = [](qsizetype index, const QJsonValue& value) {
        constexpr std::array checks{&Written<Parameters>::isPossible...};
        return checks.at(std::size_t(index))(value);
    };
    table.insert(QString::fromLatin1(name), signature);
}

Table makeTable() {
    Table table;
#define FORWARD(result, failure, name, parameters, arguments) add(table, #name, #arguments, &name);
#include <toupcam/toupcam_functions.h>
    return table;
}

} // namespace

const PReplaySignature* PReplaySignature::find(const QString& name) {
    static const Table& table = *new Table(makeTable()); // the SDK's threads may outlive main()
    const auto found = table.constFind(name);
    return found == table.constEnd() ? nullptr : &*found;
}
