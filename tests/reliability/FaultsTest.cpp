// SPDX-License-Identifier: MIT
// The scripted session with one SDK call failing, or with something else happening at that call: a
// part of all cases, or all of them, or one (see scripts/faults).
#include <reliability/FaultPlan.h>
#include <reliability/FaultRunner.h>
#include <reliability/QuietLog.h>

#include <support/QtPrinters.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <set>

using testing::IsEmpty;

namespace {

constexpr std::size_t mostReports = 20;

/// Sorted: the answer of a white balance, and what is then read, comes at any time.
std::vector<std::string> toTexts(const std::vector<SdkCall>& calls) {
    std::vector<std::string> texts;
    for (const SdkCall& call : calls)
        texts.push_back(call.function + '#' + std::to_string(call.number));
    std::sort(texts.begin(), texts.end());
    return texts;
}

const CallFault::Kind* findFailure(const std::string& name) {
    for (const CallFault::Kind& kind : CallFault::failures()) {
        if (name == kind.name)
            return &kind;
    }
    return nullptr;
}

TEST(CallFault, is_written_as_a_text_and_read_back) {
    const CallFault fault{{"Toupcam_get_Hue", 3}, findFailure("unplugged")};
    ASSERT_NE(fault.kind, nullptr);
    EXPECT_EQ(fault.text(), u"Toupcam_get_Hue#3:unplugged"_qs);
    const auto read = CallFault::parse(fault.text());
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->call.function, "Toupcam_get_Hue");
    EXPECT_EQ(read->call.number, 3U);
    EXPECT_EQ(read->kind, fault.kind);
    for (const auto& text : {u"Toupcam_get_Hue"_qs, u"#3:fail"_qs, u"f#x:fail"_qs, u"f#3:none"_qs})
        EXPECT_FALSE(CallFault::parse(text)) << text.toStdString();
}

TEST(FaultPlan, has_every_call_with_every_failure_and_one_callback_before_and_after_it) {
    const FaultPlan plan({{"Toupcam_get_Hue", 1}, {"Toupcam_get_Hue", 2}, {"Toupcam_Close", 1}}, 5);
    std::map<std::string, int> kinds;
    for (const CallFaults& faults : plan.single()) {
        ASSERT_EQ(faults.size(), 1U);
        ++kinds[faults.front().kind->name];
    }
    EXPECT_EQ(plan.single().size(), 2 * 9 + 3U) << "closing cannot fail";
    EXPECT_EQ(kinds["gen_failure"], 2);
    EXPECT_EQ(kinds["unplugged"], 3);
    EXPECT_NE(plan.single()[0].front().call.function, plan.single()[1].front().call.function)
        << "each function comes early";
}

TEST(FaultPlan, has_the_same_cases_for_the_same_seed) {
    const std::vector<SdkCall> calls{{"Toupcam_get_Hue", 1}, {"Toupcam_put_Hue", 1}};
    const auto texts = [&](std::uint64_t seed) {
        const FaultPlan plan(calls, seed);
        QStringList all;
        for (const auto& cases : {plan.single(), plan.pairs(5)}) {
            for (const CallFaults& faults : cases)
                all.append(FaultRunner::text(faults));
        }
        return all;
    };
    EXPECT_EQ(texts(3), texts(3));
    EXPECT_NE(texts(3), texts(4));
}

class Faults : public testing::Test {
protected:
    static quint64 seed() { return qEnvironmentVariable("PCD_FAULTS_SEED", u"1"_qs).toULongLong(); }

    /// How many cases the environment asks for; all: as many as there are.
    static std::size_t wanted(const char* variable, std::size_t standard, std::size_t all) {
        const QString text = qEnvironmentVariable(variable);
        if (text == u"all"_qs)
            return all;
        return text.isEmpty() ? standard : std::size_t(text.toULongLong());
    }

    /// With PCD_FAULTS_PART=2/3, every third case, beginning with the second.
    static bool isInPart(std::size_t number) {
        const QString part = qEnvironmentVariable("PCD_FAULTS_PART", u"1/1"_qs);
        const auto parts = std::max<std::size_t>(part.section(u'/', 1).toULongLong(), 1);
        return number % parts + 1 == part.section(u'/', 0, 0).toULongLong();
    }

    std::vector<SdkCall> learnCalls() {
        EXPECT_THAT(m_runner.runWithout(), IsEmpty());
        return FaultRunner::calls();
    }

    void tryCase(const CallFaults& faults) {
        if (m_reports >= mostReports)
            return;
        const QStringList complaints = m_runner.runWith(faults);
        m_reports += complaints.isEmpty() ? 0 : 1;
        EXPECT_THAT(complaints, IsEmpty())
            << "seed " << seed() << "; repeat it with:\n  scripts/faults --case '"
            << FaultRunner::text(faults).toStdString() << "'";
    }

    void printNumbers(const std::vector<SdkCall>& calls) const {
        std::set<std::string> functions;
        for (const SdkCall& call : calls)
            functions.insert(call.function);
        std::cout << "Calls of a session: " << calls.size() << " of " << functions.size()
                  << " functions. Sessions with faults: " << m_runner.sessions() << ", with "
                  << m_runner.faultsHappened() << " faults that happened; each was followed by one "
                  << "without. Profiles with an absurd value from the SDK: "
                  << m_runner.deceivedProfiles() << ". Seed: " << seed() << '\n';
    }

    const QuietLog m_quiet; // before the runner, which runs a session
    FaultRunner m_runner;

private:
    std::size_t m_reports = 0;
};

TEST_F(Faults, a_session_without_faults_makes_the_same_calls_each_time) {
    const std::vector<std::string> once = toTexts(learnCalls());
    EXPECT_GT(once.size(), 300U);
    EXPECT_EQ(toTexts(learnCalls()), once);
}

TEST_F(Faults, whatever_happens_at_a_call_nothing_breaks_and_the_next_session_succeeds) {
    const std::vector<SdkCall> calls = learnCalls();
    if (const QString one = qEnvironmentVariable("PCD_FAULTS_CASE"); !one.isEmpty()) {
        const CallFaults faults = FaultRunner::parse(one);
        ASSERT_FALSE(faults.empty())
            << one.toStdString() << ": expected FUNCTION#NUMBER:KIND, with + between several";
        return tryCase(faults);
    }
    const FaultPlan plan(calls, seed());
    const std::size_t all = plan.single().size();
    const std::size_t singles = std::min(wanted("PCD_FAULTS", 100, all), all);
    const std::vector<CallFaults> pairs = plan.pairs(wanted("PCD_FAULTS_PAIRS", singles / 5, all));
    for (std::size_t i = 0; i < singles + pairs.size(); ++i) {
        if (isInPart(i))
            tryCase(i < singles ? plan.single()[i] : pairs[i - singles]);
    }
    EXPECT_GT(m_runner.sessions(), 0U) << "there is no case in this part";
    printNumbers(calls);
}

} // namespace
