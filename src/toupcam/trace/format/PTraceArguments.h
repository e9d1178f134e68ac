// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/trace/format/PTraceText.h>

#include <QJsonObject>
#include <QStringList>

#include <type_traits>

/// The arguments of a call as JSON, by their names in toupcam.h. Any thread.
namespace PTraceArguments {

/// How much memory the SDK's texts take at most: camera ids, and serial numbers.
constexpr std::size_t idSize = sizeof(ToupcamDeviceV2::id);
constexpr std::size_t serialSize = 32;

/// The names in a list "(h, nTemp, nTint)".
QStringList split(const char* names);

/// One argument as it is when the call begins: numbers and texts with their values, callbacks as
/// "function", memory as "address". What a call writes through is null, or left out (undefined).
inline QJsonValue toInput(const QJsonValue& value) {
    return value;
}
inline QJsonValue toInput(const char* text) {
    return PTraceText::fromText(text, idSize);
}
inline QJsonValue toInput(void* memory) {
    return memory == nullptr ? QJsonValue(QJsonValue::Null) : u"address"_qs;
}
template <typename... Parameters>
QJsonValue toInput(void (*callback)(Parameters...)) {
    return callback == nullptr ? QJsonValue(QJsonValue::Null) : u"function"_qs;
}
template <typename T>
QJsonValue toInput(T* output) {
    return output == nullptr ? QJsonValue::Null : QJsonValue::Undefined;
}
template <typename T>
std::enable_if_t<std::is_integral_v<T>, QJsonValue> toInput(T number) {
    return qint64(number);
}

/// What a call has written through one argument; undefined for the others.
template <typename T>
QJsonValue toOutput(const T& argument) {
    using Target = std::remove_pointer_t<T>;
    if constexpr (std::is_same_v<T, char*>)
        return argument == nullptr ? QJsonValue::Undefined
                                   : PTraceText::fromText(argument, serialSize);
    else if constexpr (std::is_pointer_v<T> && std::is_integral_v<Target> &&
                       !std::is_const_v<Target>)
        return argument == nullptr ? QJsonValue(QJsonValue::Undefined) : qint64(*argument);
    else
        return QJsonValue::Undefined;
}

/// All values that are not undefined, by their names in the list.
QJsonObject join(const char* names, std::initializer_list<QJsonValue> values);

/// The arguments when the call begins; a handle is given by its name.
template <typename... Arguments>
QJsonObject in(const char* names, const Arguments&... arguments) {
    return join(names, {toInput(arguments)...});
}

/// What the call wrote through its arguments.
template <typename... Arguments>
QJsonObject out(const char* names, const Arguments&... arguments) {
    return join(names, {toOutput(arguments)...});
}

} // namespace PTraceArguments
