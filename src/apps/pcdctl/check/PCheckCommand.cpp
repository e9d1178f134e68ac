// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/PCheckCommand.h>

#include <apps/pcdctl/camera/PCtlHost.h>
#include <apps/pcdctl/check/PCheckPrinter.h>
#include <apps/pcdctl/check/PCheckRunner.h>
#include <apps/pcdctl/check/rules/PCheckRules.h>
#include <apps/pcdctl/cli/PCtlOutput.h>

#include <apps/common/file/PResultFile.h>

#include <QJsonArray>
#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr std::chrono::seconds usualTimeout(10);

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

PCtlOutcome saveJUnit(const PCheckReport& report, const QString& camera, const QString& file) {
    return file.isEmpty() ? PCtlOutcome()
                          : failedUnlessDone(PResultFile::write(file, report.toJUnit(camera)));
}

PCtlOutcome judge(const PCheckReport& report) {
    const PCheckReport::Totals totals = report.totals();
    if (totals.failed > 0)
        return PCtlOutcome::failed(u"the camera breaks %1 of %2 rules"_qs.arg(
            QString::number(totals.failed), QString::number(report.entries().size())));
    return totals.cases > 0 ? PCtlOutcome() : PCtlOutcome::failed(u"nothing could be examined"_qs);
}

void printAsItComes(PCheckRunner& runner, PCheckPrinter& printer) {
    const auto entry = [&runner](const PCheckRule& rule) -> const PCheckReport::Entry& {
        return runner.report().entry(rule);
    };
    QObject::connect(
        &runner, &PCheckRunner::caseBegins, &runner,
        [&](const QString& rule, const QString& where) { printer.showCase(rule, where); });
    QObject::connect(
        &runner, &PCheckRunner::caseFailed, &runner,
        [&printer, entry](const PCheckRule& rule, const QString& where, const QString& seen) {
            printer.printFailure(entry(rule), where, seen);
        });
    QObject::connect(&runner, &PCheckRunner::ruleEnded, &runner,
                     [&printer, entry](const PCheckRule& rule) { printer.printRule(entry(rule)); });
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
    const PCameraIdentity camera = host.identify(choice.device);
    PCheckBench bench(host.manager(), choice.device, options.timeout.value_or(usualTimeout));
    bench.setSimulated(camera.simulated);
    const PStatus opened = bench.open();
    if (!opened.isOk())
        return PCtlOutcome::failed(opened.reason());
    PCheckRunner runner(bench, selectRules(options.check.filters), options.check);
    PCheckPrinter printer;
    if (!options.json) {
        PCtlOutput::printLine(u"Camera %1"_qs.arg(camera.id));
        printAsItComes(runner, printer);
    }
    const bool isComplete = runner.run();
    const PCtlOutcome saved = saveJUnit(runner.report(), camera.id, options.check.junitFile);
    if (options.json) {
        QJsonObject document{{u"camera"_qs, PCtlOutput::toJson(camera)}};
        const QJsonObject report = runner.report().toJson();
        for (auto entry = report.begin(); entry != report.end(); ++entry)
            document.insert(entry.key(), entry.value());
        PCtlOutput::printDocument(document);
    } else {
        PCtlOutput::printLine(PCheckPrinter::describeTotals(runner.report()));
    }
    if (!isComplete)
        return PCtlOutcome::failed(u"interrupted before the check was complete"_qs);
    return saved.isDone() ? judge(runner.report()) : saved;
}
