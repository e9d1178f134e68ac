// SPDX-License-Identifier: MIT
#include <toupcam/trace/replay/PReplayAnswers.h>

#include <toupcam/trace/format/PTraceText.h>
#include <toupcam/trace/replay/PReplaySignature.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

const QString putHue = u"Toupcam_put_Hue"_qs;
const QString getHue = u"Toupcam_get_Hue"_qs;

QJsonObject hue(int value) {
    return {{u"h"_qs, u"h1"_qs}, {u"Hue"_qs, value}};
}

const QJsonObject onlyHandle{{u"h"_qs, u"h1"_qs}};

class PReplayAnswersTest : public testing::Test {
protected:
    /// Adds a call on two lines.
    void addCall(const QString& name, const QJsonObject& in, HRESULT result = S_OK) {
        PReplayCall call;
        call.line = ++m_line;
        call.returnLine = ++m_line;
        call.name = name;
        call.handle = 1;
        call.in = in;
        call.result = PTraceText::fromResult(result);
        call.isChange = PReplaySignature::find(name)->isChange;
        m_recording.calls.push_back(call);
    }
    void addCallback(PReplayCallback::Kind kind) {
        PReplayCallback callback;
        callback.line = ++m_line;
        callback.kind = kind;
        callback.handle = 1;
        if (kind == PReplayCallback::Kind::Data)
            callback.pixels = PReplayPixels{};
        m_recording.callbacks.push_back(callback);
    }
    /// The line of the call that answers; 0 for none.
    int take(const QString& name, const QJsonObject& in) {
        if (!m_answers)
            m_answers.emplace(m_recording);
        const PReplayCall* const call = m_answers->take(name, 1, in);
        return call == nullptr ? 0 : call->line;
    }
    int read() { return take(getHue, onlyHandle); }
    PReplayAnswers& answers() {
        if (!m_answers)
            m_answers.emplace(m_recording);
        return *m_answers;
    }
    QStringList divergences() {
        answers().finish();
        return answers().divergences();
    }

private:
    int m_line = 1;
    PReplayRecording m_recording;
    std::optional<PReplayAnswers> m_answers;
};

TEST_F(PReplayAnswersTest, changes_are_answered_in_their_order) {
    addCall(putHue, hue(1));
    addCall(putHue, hue(1), E_FAIL);
    EXPECT_EQ(take(putHue, hue(1)), 2);
    EXPECT_EQ(take(putHue, hue(1)), 4);
    EXPECT_EQ(divergences(), QStringList());
    EXPECT_EQ(answers().count(), 2U);
}

TEST_F(PReplayAnswersTest, a_reading_between_two_changes_is_that_between_them) {
    addCall(getHue, onlyHandle); // 2
    addCall(putHue, hue(1));     // 4
    addCall(getHue, onlyHandle); // 6
    addCall(putHue, hue(2));     // 8
    addCall(getHue, onlyHandle); // 10
    EXPECT_EQ(take(putHue, hue(1)), 4) << "the first reading is left out";
    EXPECT_EQ(read(), 6);
    EXPECT_EQ(read(), 6) << "one more than was recorded";
    EXPECT_EQ(take(putHue, hue(2)), 8);
    EXPECT_EQ(read(), 10);
    EXPECT_EQ(divergences(), QStringList());
}

TEST_F(PReplayAnswersTest, readings_come_in_their_order) {
    addCall(getHue, onlyHandle);
    addCall(getHue, onlyHandle);
    EXPECT_EQ(read(), 2);
    EXPECT_EQ(read(), 4);
    EXPECT_EQ(read(), 4);
}

TEST_F(PReplayAnswersTest, a_reading_does_not_see_what_follows_an_event) {
    addCall(getHue, onlyHandle);
    addCallback(PReplayCallback::Kind::Event);
    addCall(getHue, onlyHandle, E_GEN_FAILURE);
    EXPECT_EQ(read(), 2);
    EXPECT_EQ(read(), 2);
    answers().passCallback();
    EXPECT_EQ(read(), 5);
}

TEST_F(PReplayAnswersTest, a_reading_after_an_event_is_not_an_older_one) {
    addCall(getHue, onlyHandle);
    addCall(getHue, onlyHandle);
    addCallback(PReplayCallback::Kind::HotPlug);
    addCall(getHue, onlyHandle, E_GEN_FAILURE);
    answers().passCallback();
    EXPECT_EQ(read(), 7);
}

TEST_F(PReplayAnswersTest, a_reading_that_was_only_recorded_later_gets_that_value) {
    addCall(putHue, hue(1));
    addCall(getHue, onlyHandle);
    EXPECT_EQ(read(), 4);
    EXPECT_EQ(take(putHue, hue(1)), 2);
    EXPECT_EQ(divergences(), QStringList());
}

TEST_F(PReplayAnswersTest, another_value_is_a_divergence_and_gets_the_answer_of_the_function) {
    addCall(putHue, hue(1), E_FAIL);
    EXPECT_EQ(take(putHue, hue(9)), 2);
    EXPECT_EQ(divergences(),
              QStringList({u"line 2: Toupcam_put_Hue(Hue=9, h=h1) was called, but "
                           "Toupcam_put_Hue(Hue=1, h=h1) was recorded"_qs,
                           u"line 2: Toupcam_put_Hue(Hue=1, h=h1) was recorded, but was not "
                           "called"_qs}));
}

TEST_F(PReplayAnswersTest, a_change_that_is_left_out_is_a_divergence_and_the_next_one_fits_again) {
    addCall(putHue, hue(1));
    addCall(putHue, hue(2));
    EXPECT_EQ(take(putHue, hue(2)), 4);
    EXPECT_EQ(divergences(),
              QStringList(u"line 2: Toupcam_put_Hue(Hue=1, h=h1) was recorded, but was not "
                          "called"_qs));
}

TEST_F(PReplayAnswersTest, a_change_after_the_last_one_is_a_divergence) {
    addCall(putHue, hue(1));
    take(putHue, hue(1));
    EXPECT_EQ(take(putHue, hue(1)), 2);
    EXPECT_EQ(divergences(),
              QStringList(u"line 2: Toupcam_put_Hue(Hue=1, h=h1) was called after it, and was not "
                          "recorded"_qs));
}

TEST_F(PReplayAnswersTest, a_function_that_was_never_called_has_no_answer) {
    addCall(putHue, hue(1));
    take(putHue, hue(1));
    EXPECT_EQ(take(u"Toupcam_get_Gamma"_qs, onlyHandle), 0);
    EXPECT_EQ(divergences(),
              QStringList(u"line 2: Toupcam_get_Gamma(h=h1) was called after it, and was not "
                          "recorded"_qs));
}

TEST_F(PReplayAnswersTest, a_callback_follows_the_changes_before_it) {
    addCall(putHue, hue(1));
    addCallback(PReplayCallback::Kind::Data);
    addCall(putHue, hue(2));
    ASSERT_NE(answers().nextCallback(), nullptr);
    EXPECT_EQ(answers().nextCallback()->line, 4);
    EXPECT_FALSE(answers().hasReached(4));
    take(putHue, hue(1));
    EXPECT_TRUE(answers().hasReached(4));
    EXPECT_TRUE(answers().isCallbackLeft(1, 5));
    EXPECT_FALSE(answers().isCallbackLeft(1, 4));
    EXPECT_FALSE(answers().isCallbackLeft(2, 5));
    answers().passCallback();
    EXPECT_EQ(answers().nextCallback(), nullptr);
    EXPECT_FALSE(answers().isCallbackLeft(1, 5));
}

} // namespace
