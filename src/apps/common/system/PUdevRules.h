// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/system/PSystemTree.h>
#include <apps/common/system/PUsbId.h>

#include <QList>

/// The rules by which udev gives users access to devices. Any thread.
class PUdevRules {
public:
    /// The folder in which administrators put rules, and the file there that makeFile() is for. It
    /// comes before the rules of the system that give the user at the computer access.
    static constexpr auto usualFile = "/etc/udev/rules.d/70-pcd-camera.rules";

    /// The content of a file with rules for these products. Lines of the template with @VENDOR@
    /// and @PRODUCT@ are repeated for each.
    static QByteArray makeFile(const QByteArray& fileTemplate, const QList<PUsbId>& ids);

    /// The file of the system that has a rule for this product; empty if none has.
    static QString findFile(const PSystemTree& system, const PUsbId& id);
};
