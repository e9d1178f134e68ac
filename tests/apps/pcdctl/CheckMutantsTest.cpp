// SPDX-License-Identifier: MIT
// Drivers that break one rule each: `pcdctl check` reports this rule, and no other.
#include <apps/pcdctl/CtlProcess.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QJsonArray>
#include <QRegularExpression>

#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace {

constexpr std::size_t atOnce = 24; // most of the time they wait

QStringList listRules() {
    QStringList ids;
    for (const QJsonValue& rule :
         runCtl({u"check"_qs, u"--list"_qs, jsonWord}).json[u"rules"].toArray())
        ids.append(rule[u"id"].toString());
    return ids;
}

/// The check of a driver that breaks a rule, or none.
std::unique_ptr<CtlProcess> startCheck(const QString& broken) {
    auto process = std::make_unique<CtlProcess>(QStringList{
        u"check"_qs, jsonWord, u"--sdk"_qs, QStringLiteral(EMPTY_CAMERA_SDK), u"--plugin-path"_qs,
        QStringLiteral(MUTANT_PLUGIN), u"--timeout=2"_qs, u"--allow=unplug,heat,long"_qs});
    process->with(u"PCD_MUTANT"_qs, broken).start();
    return process;
}

QStringList findFailed(const QJsonObject& report) {
    QStringList ids;
    for (const QJsonValue& rule : report[u"rules"].toArray()) {
        if (rule[u"state"] == u"failed"_qs)
            ids.append(rule[u"id"].toString());
    }
    return ids;
}

void expectCaught(const QString& broken, CtlProcess& process) {
    SCOPED_TRACE(broken.toStdString());
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(findFailed(process.json()), QStringList{broken}) << process.errors().toStdString();
    EXPECT_EQ(process.exitCode(), 1);
}

TEST(CheckMutants, break_each_rule_once_and_are_caught_by_that_rule_only) {
    const QStringList rules = listRules();
    ASSERT_GE(rules.size(), 60);
    std::vector<std::pair<QString, std::unique_ptr<CtlProcess>>> running;
    for (const QString& rule : rules) {
        if (running.size() == atOnce) {
            expectCaught(running.front().first, *running.front().second);
            running.erase(running.begin());
        }
        running.emplace_back(rule, startCheck(rule));
    }
    for (const auto& [rule, process] : running)
        expectCaught(rule, *process);
}

TEST(CheckMutants, that_break_nothing_pass_every_rule) {
    const auto process = startCheck({});
    ASSERT_TRUE(process->finish());
    const QJsonObject report = process->json();
    EXPECT_EQ(process->exitCode(), 0) << process->errors().toStdString();
    // All but those for cameras without stills.
    EXPECT_EQ(report[u"totals"][u"passed"].toInt(), listRules().size() - 1);
    EXPECT_EQ(report[u"totals"][u"failed"].toInt(), 0);
}

TEST(CheckMutants, break_no_rule_that_does_not_exist) {
    const QStringList rules = listRules();
    static const QRegularExpression use(u"breaks\\(\"([^\"]+)\"\\)"_qs);
    int count = 0;
    for (const QString& file : {u"MutantDevice.h"_qs, u"MutantDevice.cpp"_qs,
                                u"MutantRegister.h"_qs, u"MutantTrigger.h"_qs}) {
        const QString source =
            QString::fromUtf8(readFile(QStringLiteral(MUTANT_SOURCES "/") + file));
        for (const QRegularExpressionMatch& match : use.globalMatch(source)) {
            ++count;
            EXPECT_TRUE(rules.contains(match.captured(1))) << match.captured(1).toStdString();
        }
    }
    EXPECT_GE(count, rules.size());
}

} // namespace
