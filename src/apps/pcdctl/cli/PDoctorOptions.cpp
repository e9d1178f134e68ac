// SPDX-License-Identifier: MIT
#include <apps/pcdctl/cli/PDoctorOptions.h>

#include <apps/common/program/PProgramOptions.h>

namespace {

constexpr double mostMegabytes = 1'000'000;

/// Nothing that is not a rate.
std::optional<double> toRate(const QString& text) {
    bool isNumber = false;
    const double rate = text.toDouble(&isNumber);
    // Written so that "nan" is refused too.
    return isNumber && rate > 0 && rate <= mostMegabytes ? std::optional<double>(rate)
                                                         : std::nullopt;
}

/// Options that have no effect together with the others are not what the user meant.
PStatus checkTogether(const QCommandLineParser& parser) {
    const bool isForRule = parser.isSet(u"udev"_qs);
    if (!isForRule && parser.isSet(u"rule-file"_qs))
        return PStatus::failure(u"--rule-file is for the rule of --udev: expected both or none"_qs);
    for (const QString& option : {u"report"_qs, u"rate"_qs, u"folder"_qs, u"json"_qs}) {
        if (isForRule && parser.isSet(option)) {
            return PStatus::failure(
                u"--udev and --%1 cannot be used together: expected one of them"_qs.arg(option));
        }
    }
    return PStatus::Ok;
}

} // namespace

PStatus PDoctorOptions::read(const QCommandLineParser& parser) {
    const PStatus status = checkTogether(parser);
    if (!status.isOk())
        return status;
    for (const QString& option : {u"report"_qs, u"folder"_qs, u"rule-file"_qs}) {
        if (parser.isSet(option) && parser.value(option).isEmpty())
            return PProgramOptions::wrongValue(option, QString(), u"a non-empty value"_qs);
    }
    report = parser.value(u"report"_qs);
    ruleFile = parser.value(u"rule-file"_qs);
    if (parser.isSet(u"folder"_qs))
        folder = parser.value(u"folder"_qs);
    if (parser.isSet(u"rate"_qs)) {
        rate = toRate(parser.value(u"rate"_qs));
        if (!rate) {
            return PProgramOptions::wrongValue(
                u"rate"_qs, parser.value(u"rate"_qs),
                u"a number of megabytes per second above 0, up to 1000000"_qs);
        }
    }
    return readIds(parser.values(u"udev"_qs));
}

PStatus PDoctorOptions::readIds(const QStringList& texts) {
    for (const QString& text : texts) {
        if (text == u"found") {
            udevForFound = true;
            continue;
        }
        const std::optional<PUsbId> id = PUsbId::parse(text);
        if (!id) {
            return PProgramOptions::wrongValue(
                u"udev"_qs, text, u"VENDOR:PRODUCT, four hexadecimal digits each, or \"found\""_qs);
        }
        udevIds.append(*id);
    }
    return PStatus::Ok;
}
