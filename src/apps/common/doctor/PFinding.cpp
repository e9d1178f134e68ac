// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PFinding.h>

#include <PCore/PPrintableText.h>

#include <algorithm>

namespace {

constexpr int severityWidth = 7; // of "warning"
constexpr int topicWidth = 13;   // of "usb-bandwidth"

} // namespace

QString PFinding::severityName(Severity severity) {
    switch (severity) {
    case Severity::Ok:
        return u"ok"_qs;
    case Severity::Note:
        return u"note"_qs;
    case Severity::Warning:
        return u"warning"_qs;
    case Severity::Error:
        return u"error"_qs;
    }
    return {};
}

PFinding::Severity PFinding::findWorst(const QList<PFinding>& findings) {
    Severity worst = Severity::Ok;
    for (const PFinding& finding : findings)
        worst = std::max(worst, finding.severity);
    return worst;
}

QJsonObject PFinding::toJson() const {
    QJsonObject object{{u"severity"_qs, severityName(severity)},
                       {u"topic"_qs, topic},
                       {u"examined"_qs, examined},
                       {u"found"_qs, found}};
    if (!fix.isEmpty())
        object.insert(u"fix"_qs, fix);
    return object;
}

QString PFinding::toText() const {
    const QString head = u"%1  %2  "_qs.arg(severityName(severity).leftJustified(severityWidth),
                                            topic.leftJustified(topicWidth));
    const QString line = PPrintableText::toLine(u"%1%2: %3"_qs.arg(head, examined, found));
    return fix.isEmpty() ? line
                         : u"%1\n%2Fix: %3"_qs.arg(line, QString(head.size(), u' '),
                                                   PPrintableText::toLine(fix));
}
