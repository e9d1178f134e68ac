// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CameraCommandTest.h>

#include <QJsonArray>
#include <QRegularExpression>

CtlResult CameraCommandTest::run(const QStringList& arguments) const {
    const QString file = scene.writeTo(path(u"scene.json"_qs));
    const QString journal = path(u"journal"_qs);
    writeFile(journal, "");
    return runCtl(arguments + QStringList{u"--sdk=sim"_qs, u"--scene"_qs, file},
                  [&](CtlProcess& process) { process.with(u"TOUPCAM_SIM_JOURNAL"_qs, journal); });
}

QStringList CameraCommandTest::calls() const {
    static const QRegularExpression doing(
        u"_put_|AwbOnePush|StartPushMode|_Stop|_Snap|_Trigger"_qs);
    const QString journal = QString::fromUtf8(readFile(path(u"journal"_qs)));
    // Opening the camera ends with reading the last property of its list.
    const QString opened = journal.section(u"Toupcam_get_Option(h1, 24, "_qs, 1);
    QStringList result;
    for (const QString& line : opened.split(u'\n').filter(doing))
        result.append(line.section(u" = "_qs, 0, 0));
    return result;
}

QStringList idsIn(const QJsonValue& array) {
    QStringList ids;
    for (const QJsonValue& entry : array.toArray())
        ids.append(entry.isString() ? entry.toString() : entry[u"id"_qs].toString());
    return ids;
}
