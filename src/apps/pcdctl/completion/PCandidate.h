// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

/// One word that the user may mean, and what it stands for. A value type.
struct PCandidate {
    QString text;
    QString description = {};
};

using PCandidates = QList<PCandidate>;
