// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CtlProcess.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QJsonArray>
#include <QXmlStreamReader>

#include <csignal>

namespace {

const QString checkWord = u"check"_qs;

/// Without the cameras of the simulated SDK: the first one is then the plugin's.
QStringList withPlugin(const QString& plugin) {
    return {checkWord, u"--sdk"_qs, QStringLiteral(EMPTY_CAMERA_SDK), u"--plugin-path"_qs, plugin};
}

const QStringList ofExample = withPlugin(QStringLiteral(PATTERN_PLUGIN));

QStringList collectIds(const QJsonObject& report, const QString& state) {
    QStringList ids;
    for (const QJsonValue& rule : report.value(u"rules"_qs).toArray()) {
        if (rule[u"state"].toString() == state)
            ids.append(rule[u"id"].toString());
    }
    return ids;
}

class CheckCommand : public FolderTest {};

TEST_F(CheckCommand, passes_a_built_in_camera_and_lists_what_it_lacks) {
    const CtlResult result =
        runCtl({checkWord, u"--sdk=sim"_qs, u"--camera=1"_qs, jsonWord, u"--allow=heat"_qs});
    EXPECT_EQ(result.exitCode, 0) << result.output.toStdString() << result.errors.toStdString();
    EXPECT_EQ(collectIds(result.json, u"failed"_qs), QStringList());
    bool isListed = false;
    for (const QJsonValue& rule : result.json[u"rules"].toArray())
        isListed = isListed || rule[u"inert"].toArray().contains(u"tint"_qs);
    EXPECT_TRUE(isListed) << "a monochrome camera has no tint";
}

TEST_F(CheckCommand, passes_the_example_plugin) {
    const CtlResult result =
        runCtl(ofExample + QStringList{jsonWord, u"--allow=unplug,heat,long"_qs});
    EXPECT_EQ(result.exitCode, 0) << result.output.toStdString() << result.errors.toStdString();
    EXPECT_EQ(collectIds(result.json, u"failed"_qs), QStringList());
    EXPECT_EQ(result.json[u"camera"][u"id"].toString(), u"Pattern-P1"_qs);
}

TEST_F(CheckCommand, unplugs_a_simulated_camera_and_passes_it) {
    const CtlResult result =
        runCtl({checkWord, u"--sdk=sim"_qs, u"--camera=1"_qs, jsonWord, u"--filter=hot-plug.*"_qs,
                u"--allow=unplug"_qs, u"--trace"_qs, path(u"a.trace"_qs)});
    EXPECT_EQ(result.exitCode, 0) << result.output.toStdString() << result.errors.toStdString();
    EXPECT_EQ(collectIds(result.json, u"passed"_qs),
              (QStringList{u"hot-plug.noticed"_qs, u"hot-plug.returns"_qs,
                           u"hot-plug.calls-return"_qs, u"hot-plug.while-streaming"_qs,
                           u"hot-plug.stream-ends"_qs, u"hot-plug.opens-again"_qs,
                           u"hot-plug.streams-again"_qs, u"hot-plug.nothing-left"_qs}));
    // By seven rules once each, by the last one five times, and the two that were found at first.
    const QByteArray trace = readFile(path(u"a.trace"_qs));
    EXPECT_EQ(trace.count(R"("kind":"call","name":"Toupcam_Open")"), 7 + 5 + 2);
    EXPECT_EQ(trace.count(R"("kind":"call","name":"Toupcam_Close")"), 7 + 5 + 2);
}

TEST_F(CheckCommand, passes_a_camera_of_another_plugin) {
    const CtlResult result = runCtl(withPlugin(QStringLiteral(LAB_PLUGIN)) +
                                    QStringList{u"--allow=unplug"_qs, jsonWord});
    EXPECT_EQ(collectIds(result.json, u"failed"_qs), QStringList());
    EXPECT_EQ(result.exitCode, 0) << result.output.toStdString() << result.errors.toStdString();
}

TEST_F(CheckCommand, prints_a_line_for_each_rule_and_one_with_totals) {
    const CtlResult result =
        runCtl(ofExample + QStringList{u"--filter=groups.*,hot-plug.noticed"_qs});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    const QString output = QString::fromUtf8(result.output);
    EXPECT_TRUE(output.contains(u"passed   groups.members: 1 case\n"_qs))
        << result.output.constData();
    EXPECT_TRUE(output.contains(u"skipped  hot-plug.noticed: needs --allow unplug\n"_qs))
        << result.output.constData();
    EXPECT_TRUE(
        output.endsWith(u"\n6 rules: 5 passed, 0 failed, 1 skipped; 5 cases: 0 failed\n"_qs))
        << result.output.constData();
}

TEST_F(CheckCommand, of_one_rule_does_not_call_it_rules) {
    const CtlResult result = runCtl(ofExample + QStringList{u"--filter=groups.members"_qs});
    EXPECT_TRUE(
        result.output.endsWith("\n1 rule: 1 passed, 0 failed, 0 skipped; 1 case: 0 failed\n"))
        << result.output.constData();
}

TEST_F(CheckCommand, prints_what_failed_with_what_was_seen_the_rule_and_a_hint) {
    const CtlResult result =
        runCtl(withPlugin(QStringLiteral(MUTANT_PLUGIN)) + QStringList{u"--filter=groups.*"_qs},
               [](CtlProcess& process) { process.with(u"PCD_MUTANT"_qs, u"groups.repeats"_qs); });
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.output.contains("groups.repeats: idle\n"
                                       "         Seen: \"gain\" is a member twice\n"
                                       "         Rule: No property is a member twice: "))
        << result.output.constData();
    EXPECT_TRUE(result.output.contains("\n         Hint: See getSupportPropertyGroups().\n"))
        << result.output.constData();
    EXPECT_TRUE(result.output.contains("\nfailed   groups.repeats: 1 of 1 case\n"))
        << result.output.constData();
    EXPECT_EQ(result.errors, u"pcdctl: the camera breaks 1 of 5 rules\n"_qs);
}

TEST_F(CheckCommand, runs_every_case_as_often_as_requested) {
    const QStringList arguments = ofExample + QStringList{u"--filter=groups.*"_qs, jsonWord};
    const CtlResult result = runCtl(arguments + QStringList{u"--iterations=3"_qs});
    EXPECT_EQ(result.json[u"totals"][u"cases"].toInt(), 15);
}

TEST_F(CheckCommand, in_which_nothing_could_be_examined_fails) {
    const CtlResult result = runCtl(ofExample + QStringList{u"--filter=trigger.frames"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, u"pcdctl: nothing could be examined\n"_qs);
}

TEST_F(CheckCommand, without_a_camera_says_so) {
    const CtlResult result =
        runCtl({checkWord, u"--sdk"_qs, QStringLiteral(EMPTY_CAMERA_SDK), jsonWord});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_FALSE(result.errors.isEmpty());
}

TEST_F(CheckCommand, writes_a_junit_file_with_a_suite_for_each_group) {
    const QString file = path(u"check.xml"_qs);
    const CtlResult result =
        runCtl(withPlugin(QStringLiteral(MUTANT_PLUGIN)) +
                   QStringList{u"--filter=groups.*,open.*"_qs, u"--junit"_qs, file},
               [](CtlProcess& process) { process.with(u"PCD_MUTANT"_qs, u"groups.ids"_qs); });
    EXPECT_EQ(result.exitCode, 1);
    QXmlStreamReader xml(readFile(file));
    QStringList elements;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement)
            elements.append(xml.name().toString() + u' ' +
                            xml.attributes().value(u"name"_qs).toString());
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    EXPECT_EQ(elements,
              (QStringList{u"testsuites pcdctl check of Pattern-P1"_qs, u"testsuite open"_qs,
                           u"testcase open.link"_qs, u"testcase open.again"_qs,
                           u"testcase open.unlink"_qs, u"testsuite groups"_qs,
                           u"testcase groups.members"_qs, u"testcase groups.ids"_qs, u"failure "_qs,
                           u"testcase groups.titles"_qs, u"testcase groups.repeats"_qs,
                           u"testcase groups.new-objects"_qs}));
}

TEST_F(CheckCommand, that_cannot_write_the_junit_file_examines_nothing) {
    const CtlResult result = runCtl(ofExample + QStringList{u"--filter=groups.*"_qs, u"--junit"_qs,
                                                            path(u"none/check.xml"_qs)});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"none/check.xml\": No such file or directory"_qs))
        << result.errors.toStdString();
    EXPECT_EQ(result.output, QByteArray());
}

TEST_F(CheckCommand, that_is_interrupted_says_so_and_begins_nothing_more) {
    // Even beginning all of them without examining anything would take half a minute.
    CtlProcess process({checkWord, u"--sdk=sim"_qs, u"--camera=1"_qs, u"--iterations=1000000"_qs});
    ASSERT_TRUE(process.start().waitForOutput("passed   identity.model"));
    process.sendSignal(SIGINT);
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 1);
    // On a busy machine, a line before it says what is waited for.
    EXPECT_TRUE(process.errors().endsWith("pcdctl: interrupted before the check was complete\n"))
        << process.errors().constData();
}

TEST_F(CheckCommand, lists_its_rules_without_a_camera) {
    const CtlResult result =
        runCtl({checkWord, u"--list"_qs, u"--filter"_qs, u"hot-plug.not*d"_qs});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output,
              "hot-plug.noticed\tA camera that was unplugged leaves the list. (needs "
              "--allow unplug)\n");
}

TEST_F(CheckCommand, lists_rules_with_a_group_a_reason_and_a_hint_each) {
    const CtlResult result = runCtl({checkWord, u"--list"_qs, jsonWord});
    const QJsonArray rules = result.json[u"rules"].toArray();
    EXPECT_GE(rules.size(), 60);
    QStringList ids;
    for (const QJsonValue& rule : rules) {
        const QString id = rule[u"id"].toString();
        EXPECT_FALSE(ids.contains(id)) << id.toStdString();
        ids.append(id);
        EXPECT_TRUE(id.startsWith(rule[u"group"].toString() + u'.')) << id.toStdString();
        EXPECT_TRUE(rule[u"reason"].toString().endsWith(u'.')) << id.toStdString();
        EXPECT_TRUE(rule[u"hint"].toString().endsWith(u'.')) << id.toStdString();
    }
}

struct WrongCheckRow {
    const char* name;
    const char* argument;
    const char* message;
};

class CheckUsage : public RowTest<WrongCheckRow> {};

ROW_TEST(CheckUsage, is_refused_with_what_was_expected) {
    const CtlResult result = runCtl({checkWord, QString::fromUtf8(GetParam().argument)});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errors.contains(QString::fromUtf8(GetParam().message)))
        << result.errors.toStdString();
}

const WrongCheckRow wrongChecks[] = {
    {"a_filter_that_matches_nothing", "--filter=streams.*",
     "no rule matches the filter \"streams.*\": expected an id as --list shows it, with * for any "
     "part, of one of the groups identity, open, "},
    {"an_empty_filter", "--filter=", "--filter: expected ids of rules"},
    {"an_unknown_hazard", "--allow=unplug,fire", "\"fire\""},
    {"no_iteration", "--iterations=0", "expected a whole number from 1 to 1000000"},
    {"a_junit_file_without_a_name", "--junit=", "expected a non-empty value"},
};

ROWS_IN(Options, CheckUsage, wrongChecks);

} // namespace
