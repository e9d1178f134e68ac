// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QStringList>

#include <functional>

/// One function of the SDK, as a trace names it. Any thread.
struct PReplaySignature {
    /// What a function returns.
    enum class Result { Nothing, Count, Handle, Code };

    QStringList arguments; ///< the names
    bool takesHandle = false;
    /// True if the call changes something, so that the order of such calls matters; false if it
    /// only reads.
    bool isChange = false;
    Result result = Result::Nothing;
    /// False if an argument of this index cannot have written this value.
    std::function<bool(qsizetype, const QJsonValue&)> canWrite;

    /// The function of this name, or null.
    static const PReplaySignature* find(const QString& name);
};
