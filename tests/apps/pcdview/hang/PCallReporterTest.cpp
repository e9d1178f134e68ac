// SPDX-License-Identifier: MIT
#include <apps/pcdview/hang/PCallReporter.h>

#include <apps/pcdview/hang/RunningProcess.h>

#include <PCore/call/PNamedCall.h>

#include <support/FolderTest.h>
#include <support/PLogCapture.h>
#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QLocale>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

using namespace std::chrono_literals;

namespace {

constexpr PNamedCall<int(int)> hangingCall("Camera_hang");
constexpr PNamedCall<int(int)> nextCall("Camera_next");

/// The number of records about calls that have not returned.
qsizetype waitsIn(const PLogCapture& log) {
    return log.texts(u"pcdview"_qs).filter(u"waiting for "_qs).size();
}

/// As waitUntil(), but without the event loop, which does not run either while a call hangs.
template <typename Predicate>
bool waitWithoutEvents(Predicate predicate) {
    const auto end = std::chrono::steady_clock::now() + longestWait();
    while (!predicate() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(5ms);
    return predicate();
}

/// With a shell script in place of the process that shows the notice.
class PCallNotices : public FolderTest {
protected:
    QByteArray messages() const { return readFile(path(u"messages"_qs)); }
    qint64 process() const { return readFile(path(u"process"_qs)).trimmed().toLongLong(); }

    PCallReporter reporter{20ms,
                           {u"/bin/sh"_qs, u"-c"_qs,
                            u"cd '%1'; echo $$ > process; exec cat >> messages"_qs.arg(path({}))}};
};

} // namespace

TEST(PCallReporter, a_call_that_keeps_the_gui_thread_is_logged_meanwhile_and_shown_afterwards) {
    const PLogCapture log;
    PCallReporter reporter(20ms, {});
    const QSignalSpy returned(&reporter, &PCallReporter::returned);
    const auto isLogged = [&log] {
        const QStringList texts = log.texts(u"pcdview"_qs);
        return std::any_of(texts.begin(), texts.end(), [](const QString& text) {
            return text.startsWith(u"waiting for Camera_hang(6) to return"_qs);
        });
    };
    {
        const auto inProgress = hangingCall.begin(6);
        EXPECT_TRUE(waitUntil(isLogged));
        EXPECT_TRUE(returned.isEmpty());
    }
    ASSERT_TRUE(waitUntil([&returned] { return !returned.isEmpty(); }));
    const QString message = returned.first().first().toString();
    const QRegularExpression expected(
        u"^The camera did not answer for [0-9.]+ s: Camera_hang\\(6\\) had not returned$"_qs);
    EXPECT_TRUE(expected.match(message).hasMatch()) << message.toStdString();
}

TEST(PCallReporter, the_time_is_written_as_the_language_does) {
    const QScopeGuard restore([locale = QLocale()] { QLocale::setDefault(locale); });
    QLocale::setDefault(QLocale(u"ru"_qs));
    const PLogCapture log;
    PCallReporter reporter(20ms, {});
    const QSignalSpy returned(&reporter, &PCallReporter::returned);
    {
        const auto inProgress = hangingCall.begin(6);
        EXPECT_TRUE(waitUntil([&log] { return waitsIn(log) > 0; }));
    }
    ASSERT_TRUE(waitUntil([&returned] { return !returned.isEmpty(); }));
    const QString message = returned.first().first().toString();
    const QRegularExpression expected(u" for [0-9]+,[0-9] s: Camera_hang\\(6\\)"_qs);
    EXPECT_TRUE(expected.match(message).hasMatch()) << message.toStdString();
}

TEST_F(PCallNotices, a_call_that_keeps_the_gui_thread_long_is_shown_until_it_has_returned) {
    {
        const auto inProgress = hangingCall.begin(6);
        ASSERT_TRUE(waitUntil([this] { return messages().endsWith(" Camera_hang(6)"); }));
        EXPECT_GE(messages().split(' ').first().toInt(), 80); // milliseconds, four times 20
        EXPECT_TRUE(isProcessRunning(process()));
    }
    EXPECT_TRUE(waitUntil([this] { return !isProcessRunning(process()); }));
}

TEST_F(PCallNotices, the_next_call_that_hangs_is_shown_at_once_while_the_gui_thread_is_not_free) {
    {
        const auto inProgress = hangingCall.begin(6);
        ASSERT_TRUE(waitWithoutEvents([this] { return messages().endsWith(" Camera_hang(6)"); }));
    }
    {
        const auto inProgress = nextCall.begin(7);
        ASSERT_TRUE(waitWithoutEvents([this] { return messages().endsWith(" Camera_next(7)"); }));
        EXPECT_TRUE(isProcessRunning(process()));
    }
    EXPECT_TRUE(waitUntil([this] { return !isProcessRunning(process()); }));
}

TEST_F(PCallNotices, a_call_of_another_thread_is_logged_and_not_shown) {
    const PLogCapture log;
    std::thread([&log] {
        const auto inProgress = hangingCall.begin(6);
        EXPECT_TRUE(waitWithoutEvents([&log] { return waitsIn(log) >= 5; }));
    }).join();
    const auto inProgress = nextCall.begin(7);
    ASSERT_TRUE(waitUntil([this] { return messages().contains("Camera_next(7)"); }));
    EXPECT_FALSE(messages().contains("Camera_hang")) << messages().constData();
}

TEST_F(PCallNotices, no_call_is_shown_after_the_window_was_closed) {
    const PLogCapture log;
    reporter.stopNotices();
    const auto inProgress = hangingCall.begin(6);
    EXPECT_TRUE(waitWithoutEvents([&log] { return waitsIn(log) >= 6; }));
    EXPECT_FALSE(QFile::exists(path(u"process"_qs)));
}
