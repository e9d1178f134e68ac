// SPDX-License-Identifier: MIT
#include <apps/common/system/PUdevRules.h>

#include <QDir>

namespace {

bool isRuleFor(const QString& line, const PUsbId& id) {
    return !line.trimmed().startsWith(u'#') &&
           line.contains(u"ATTR{idVendor}==\"%1\""_qs.arg(id.vendorText()), Qt::CaseInsensitive) &&
           line.contains(u"ATTR{idProduct}==\"%1\""_qs.arg(id.productText()), Qt::CaseInsensitive);
}

bool hasRuleFor(const QString& rules, const PUsbId& id) {
    for (const QString& line : rules.split(u'\n')) {
        if (isRuleFor(line, id))
            return true;
    }
    return false;
}

} // namespace

QByteArray PUdevRules::makeFile(const QByteArray& fileTemplate, const QList<PUsbId>& ids) {
    QByteArray file;
    for (const QByteArray& line : fileTemplate.trimmed().split('\n')) {
        if (!line.contains("@VENDOR@")) {
            file += line + '\n';
            continue;
        }
        for (const PUsbId& id : ids) {
            file += QByteArray(line)
                        .replace("@VENDOR@", id.vendorText().toLatin1())
                        .replace("@PRODUCT@", id.productText().toLatin1()) +
                    '\n';
        }
    }
    return file;
}

QString PUdevRules::findFile(const PSystemTree& system, const PUsbId& id) {
    for (const QString& folder : {u"etc/udev/rules.d/"_qs, u"run/udev/rules.d/"_qs,
                                  u"usr/lib/udev/rules.d/"_qs, u"lib/udev/rules.d/"_qs}) {
        const QDir rules(system.path(folder), u"*.rules"_qs, QDir::Name, QDir::Files);
        for (const QString& name : rules.entryList()) {
            if (hasRuleFor(system.readText(folder + name), id))
                return rules.filePath(name);
        }
    }
    return QString();
}
