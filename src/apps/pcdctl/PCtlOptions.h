// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

/// What the user has asked for. A value.
struct PCtlOptions {
    enum class Command { List, Modes, Snap, Stream, Monitor };

    Command command = Command::List;

    QString camera; ///< index, id or beginning of an id; empty: the first
    QString sdk = QStringLiteral("auto");
    QString scene; ///< file; empty: none
    QStringList pluginPaths;
    std::optional<QString> logFilter;
    bool json = false;

    QString mode;                                     ///< id or name; empty: as it is
    std::optional<std::chrono::milliseconds> timeout; ///< longest wait for a picture

    QString output; ///< snap: the picture file

    std::optional<quint64> frames;                     ///< stream: number of frames
    std::optional<std::chrono::milliseconds> duration; ///< stream, monitor: length of the run
    QString savePattern;                               ///< stream: picture files; empty: none
};
