// SPDX-License-Identifier: MIT
#include <apps/pcdctl/cli/PCheckOptions.h>

#include <apps/common/program/PProgramOptions.h>

namespace {

constexpr int mostIterations = 1'000'000;

/// The parts between the commas of all values of an option.
QStringList splitValues(const QCommandLineParser& parser, const QString& option) {
    QStringList parts;
    for (const QString& value : parser.values(option))
        parts += value.split(u',');
    return parts;
}

} // namespace

const QStringList& PCheckOptions::hazards() {
    static const QStringList all{u"unplug"_qs, u"heat"_qs, u"long"_qs};
    return all;
}

PStatus PCheckOptions::read(const QCommandLineParser& parser) {
    listOnly = parser.isSet(u"list"_qs);
    filters = splitValues(parser, u"filter"_qs);
    if (filters.contains(QString())) {
        return PProgramOptions::wrongValue(u"filter"_qs, parser.value(u"filter"_qs),
                                           u"ids of rules, with commas between them"_qs);
    }
    allowed = splitValues(parser, u"allow"_qs);
    for (const QString& hazard : std::as_const(allowed)) {
        if (!hazards().contains(hazard)) {
            return PProgramOptions::wrongValue(u"allow"_qs, hazard,
                                               u"one of %1"_qs.arg(hazards().join(u", "_qs)));
        }
    }
    junitFile = parser.value(u"junit"_qs);
    if (parser.isSet(u"junit"_qs) && junitFile.isEmpty())
        return PProgramOptions::wrongValue(u"junit"_qs, QString(), u"a non-empty value"_qs);
    if (!parser.isSet(u"iterations"_qs))
        return PStatus::Ok;
    bool isNumber = false;
    iterations = parser.value(u"iterations"_qs).toInt(&isNumber);
    if (!isNumber || iterations < 1 || iterations > mostIterations) {
        return PProgramOptions::wrongValue(u"iterations"_qs, parser.value(u"iterations"_qs),
                                           u"a whole number from 1 to %1"_qs.arg(mostIterations));
    }
    return PStatus::Ok;
}
