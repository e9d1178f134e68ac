// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/PCheckCommand.h>

#include <apps/pcdctl/camera/PCtlHost.h>
#include <apps/pcdctl/check/PCheckRun.h>
#include <apps/pcdctl/check/rules/PCheckRules.h>
#include <apps/pcdctl/cli/PCtlOutput.h>

#include <apps/common/file/PResultFile.h>

#include <QJsonArray>
#include <QRegularExpression>

#include <algorithm>

namespace {

bool matches(const PCheckRule& rule, const QString& filter) {
    return QRegularExpression::fromWildcard(filter).match(rule.id).hasMatch();
}

/// The rules that one of the filters matches, in their order; all without a filter.
QList<PCheckRule> selectRules(const QStringList& filters) {
    if (filters.isEmpty())
        return PCheckRules::all();
    QList<PCheckRule> selected;
    for (const PCheckRule& rule : PCheckRules::all()) {
        if (std::any_of(filters.begin(), filters.end(),
                        [&](const QString& filter) { return matches(rule, filter); }))
            selected.append(rule);
    }
    return selected;
}

QStringList collectGroups() {
    QStringList names;
    for (const PCheckRule& rule : PCheckRules::all())
        names.append(rule.group());
    names.removeDuplicates();
    return names;
}

QJsonObject toJson(const PCheckRule& rule) {
    QJsonObject object{{u"id"_qs, rule.id},
                       {u"group"_qs, rule.group()},
                       {u"reason"_qs, rule.reason},
                       {u"hint"_qs, rule.hint}};
    if (!rule.hazard.isEmpty())
        object.insert(u"hazard"_qs, rule.hazard);
    return object;
}

PCtlOutcome failedUnlessDone(const PStatus& status) {
    return status.isOk() ? PCtlOutcome() : PCtlOutcome::failed(status.reason());
}

} // namespace

PCtlOutcome prepareCheck(const PCtlOptions& options) {
    for (const QString& filter : options.check.filters) {
        if (selectRules({filter}).isEmpty()) {
            return PCtlOutcome::wrongUsage(
                u"no rule matches the filter \"%1\": expected an id as --list shows it, with * for "
                "any part, of one of the groups %2"_qs.arg(filter, collectGroups().join(u", "_qs)));
        }
    }
    const QString& file = options.check.junitFile;
    return file.isEmpty() ? PCtlOutcome() : failedUnlessDone(PResultFile::check(file));
}

PCtlOutcome runCheckList(const PCtlOptions& options) {
    QJsonArray array;
    for (const PCheckRule& rule : selectRules(options.check.filters)) {
        array.append(toJson(rule));
        if (options.json)
            continue;
        const QString hazard =
            rule.hazard.isEmpty() ? QString() : u" (needs --allow %1)"_qs.arg(rule.hazard);
        PCtlOutput::printColumns(rule.id, rule.reason + hazard);
    }
    if (options.json)
        PCtlOutput::printDocument({{u"rules"_qs, array}});
    return {};
}

PCtlOutcome runCheckCommand(PCtlHost& host, const PCtlOptions& options) {
    const PCtlHost::Choice choice = host.choose(options.camera);
    if (choice.device == nullptr)
        return choice.outcome;
    return PCheckRun(host, choice.device, selectRules(options.check.filters), options).run();
}
