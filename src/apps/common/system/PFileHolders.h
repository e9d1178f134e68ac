// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/system/PSystemTree.h>

#include <QList>

/// A program that has a file open. A value.
struct PFileHolder {
    qint64 process = 0;
    QString program; ///< its name
};

/// Which programs have a file open. Any thread.
class PFileHolders {
public:
    /// The programs, apart from this one, that have this file open: those that the user may look
    /// into, which are the user's own.
    static QList<PFileHolder> find(const PSystemTree& system, const QString& file);
};
