// SPDX-License-Identifier: MIT
#include <apps/common/system/PSystemTree.h>

#include <QFile>

#include <utility>

PSystemTree::PSystemTree(QString root)
    : m_root(std::move(root)) {
    if (!m_root.endsWith(u'/'))
        m_root += u'/';
}

PSystemTree PSystemTree::fromEnvironment() {
    const QString root = qEnvironmentVariable("PCD_SYSTEM_ROOT");
    return root.isEmpty() ? PSystemTree() : PSystemTree(root);
}

QString PSystemTree::readText(const QString& name) const {
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}
