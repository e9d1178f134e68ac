// SPDX-License-Identifier: MIT
#include <PLog/PLog.h>

#include <support/PLogCapture.h>
#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QLoggingCategory>

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <stdexcept>
#include <thread>

namespace {

PMessageStream log(PLogLevel level = PLogLevel::Info) {
    return PLog::logStream(u"test"_qs, {}, {}, 0, level);
}

/// Calls a test's function with each record.
class CallingSink : public PLogSink {
public:
    explicit CallingSink(std::function<void(const PLogRecord&)> action)
        : m_action(std::move(action)) {}
    void write(const PLogRecord& record) override { m_action(record); }

private:
    std::function<void(const PLogRecord&)> m_action;
};

/// Installs a sink in the log while this object exists.
class Installed {
public:
    explicit Installed(std::function<void(const PLogRecord&)> action)
        : sink(std::make_shared<CallingSink>(std::move(action))) {
        PLog::addSink(sink);
    }
    ~Installed() { PLog::removeSink(sink); }
    Installed(const Installed&) = delete;
    Installed& operator=(const Installed&) = delete;

    const std::shared_ptr<PLogSink> sink;
};

/// A gate at which a sink waits until it is opened.
class Gate {
public:
    void open() {
        const std::lock_guard lock(m_mutex);
        m_isOpen = true;
        m_opened.notify_all();
    }
    void wait() {
        std::unique_lock lock(m_mutex);
        m_opened.wait(lock, [&] { return m_isOpen; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_opened;
    bool m_isOpen = false;
};

} // namespace

TEST(PLog, writes_to_the_standard_error_stream_while_there_is_no_sink) {
    testing::internal::CaptureStderr();
    log() << "hello";
    const std::string line = testing::internal::GetCapturedStderr();
    EXPECT_NE(line.find(" info test: hello\n"), std::string::npos) << line;
}

TEST(PLog, does_not_write_to_the_standard_error_stream_while_there_is_a_sink) {
    const PLogCapture capture;
    testing::internal::CaptureStderr();
    log() << "hello";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(capture.texts().size(), 1);
}

TEST(PLog, gives_every_record_to_every_sink) {
    int first = 0, second = 0;
    const Installed one([&](const PLogRecord&) { ++first; });
    const Installed two([&](const PLogRecord&) { ++second; });
    log() << "a";
    log() << "b";
    EXPECT_EQ(first, 2);
    EXPECT_EQ(second, 2);
}

TEST(PLog, adds_a_sink_only_once_and_no_null) {
    int count = 0;
    const Installed one([&](const PLogRecord&) { ++count; });
    PLog::addSink(one.sink);
    PLog::addSink(nullptr);
    log() << "a";
    EXPECT_EQ(count, 1);
}

TEST(PLog, gives_a_removed_sink_nothing_more) {
    const PLogCapture other;
    int count = 0;
    const Installed one([&](const PLogRecord&) { ++count; });
    PLog::removeSink(one.sink);
    PLog::removeSink(one.sink);
    PLog::removeSink(nullptr);
    log() << "a";
    EXPECT_EQ(count, 0);
    EXPECT_EQ(other.texts().size(), 1);
}

TEST(PLog, swallows_what_a_sink_throws_and_serves_the_next) {
    const Installed bad([](const PLogRecord&) { throw std::runtime_error("disk full"); });
    const PLogCapture next;
    EXPECT_NO_THROW(log() << "a");
    EXPECT_EQ(next.texts(), QStringList{u"a"_qs});
}

TEST(PLog, drops_what_a_sink_logs_while_it_writes) {
    const PLogCapture other;
    const Installed chatty([](const PLogRecord&) {
        log() << "again";
        qWarning("and through Qt");
    });
    log() << "a";
    log() << "b";
    EXPECT_EQ(other.texts(), QStringList({u"a"_qs, u"b"_qs}));
}

TEST(PLog, lets_a_sink_remove_itself_while_it_writes) {
    const PLogCapture other;
    std::shared_ptr<PLogSink> self;
    int count = 0;
    self = std::make_shared<CallingSink>([&](const PLogRecord&) {
        ++count;
        PLog::removeSink(self);
    });
    PLog::addSink(self);
    log() << "a";
    log() << "b";
    EXPECT_EQ(count, 1);
    EXPECT_EQ(other.texts().size(), 2);
}

TEST(PLog, removes_a_sink_only_after_its_write_on_another_thread_has_ended) {
    Gate entered, goOn;
    const Installed slow([&](const PLogRecord&) {
        entered.open();
        goOn.wait();
    });
    std::thread logger([] { log() << "a"; });
    entered.wait();
    std::atomic<bool> isRemoved{false};
    std::thread remover([&] {
        PLog::removeSink(slow.sink);
        isRemoved = true;
    });
    // Never while the write runs; a longer wait here would only detect a fault more reliably.
    EXPECT_FALSE(waitUntil([&] { return isRemoved.load(); }, std::chrono::milliseconds(50)));
    goOn.open();
    logger.join();
    remover.join();
    EXPECT_TRUE(isRemoved);
}

TEST(PLog, calls_a_sink_from_one_thread_at_a_time) {
    std::atomic<int> inside{0}, most{0};
    int total = 0; // without a lock: the thread sanitizer reports it if one is needed
    const Installed sink([&](const PLogRecord&) {
        most = std::max(most.load(), ++inside);
        ++total;
        --inside;
    });
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([] {
            for (int n = 0; n < 200; ++n)
                log() << n;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(total, 800);
    EXPECT_EQ(most, 1);
}

TEST(PLog, takes_new_sinks_and_filters_while_others_log) {
    const PLogCapture capture;
    std::atomic<bool> stop{false};
    std::thread logger([&] {
        while (!stop)
            log() << "a";
    });
    int sinkCalls = 0;
    for (int i = 0; i < 100; ++i) {
        const Installed sink([&](const PLogRecord&) { ++sinkCalls; });
        PLog::setFilter(i % 2 ? u"off"_qs : u"debug"_qs);
        PLog::passes(u"test"_qs, PLogLevel::Info);
    }
    stop = true;
    logger.join();
    capture.records();
    EXPECT_EQ(PLog::filter(), u"off"_qs);
}

TEST(PLog, lets_only_records_pass_that_the_filter_lets_pass) {
    const PLogCapture capture;
    ASSERT_TRUE(PLog::setFilter(u"error,test=warning"_qs).isOk());
    EXPECT_TRUE(PLog::passes(u"test"_qs, PLogLevel::Warning));
    EXPECT_FALSE(PLog::passes(u"other"_qs, PLogLevel::Warning));
    log(PLogLevel::Info) << "no";
    log(PLogLevel::Warning) << "yes";
    EXPECT_EQ(capture.texts(), QStringList{u"yes"_qs});
}

TEST(PLog, keeps_its_filter_when_a_new_one_is_bad) {
    const PLogCapture capture;
    EXPECT_FALSE(PLog::setFilter(u"info,x=loud"_qs).isOk());
    EXPECT_EQ(PLog::filter(), u"debug"_qs);
}

TEST(PLog, takes_its_filter_from_the_environment_if_there_is_one) {
    const PLogCapture capture;
    const QByteArray before = qgetenv("PCD_LOG");
    qunsetenv("PCD_LOG");
    EXPECT_TRUE(PLog::setFilterFromEnvironment().isOk());
    EXPECT_EQ(PLog::filter(), u"debug"_qs);
    qputenv("PCD_LOG", "warning");
    EXPECT_TRUE(PLog::setFilterFromEnvironment().isOk());
    EXPECT_EQ(PLog::filter(), u"warning"_qs);
    qputenv("PCD_LOG", "loud");
    EXPECT_FALSE(PLog::setFilterFromEnvironment().isOk());
    EXPECT_EQ(PLog::filter(), u"warning"_qs);
    qputenv("PCD_LOG", before);
}

TEST(PLog, takes_qts_messages_in_with_their_level_and_category) {
    const PLogCapture capture;
    const QLoggingCategory category("camera.frames", QtDebugMsg);
    qInfo("info");
    qWarning("warning");
    qCritical("critical");
    qCDebug(category, "debug");
    const QList<PLogRecord> records = capture.records();
    ASSERT_EQ(records.size(), 4);
    EXPECT_EQ(records[0].level, PLogLevel::Info);
    EXPECT_EQ(records[1].level, PLogLevel::Warning);
    EXPECT_EQ(records[2].level, PLogLevel::Error);
    EXPECT_EQ(records[3].level, PLogLevel::Debug);
    EXPECT_EQ(records[0].source, u"qt"_qs);
    EXPECT_EQ(records[3].source, u"qt.camera.frames"_qs);
    EXPECT_EQ(records[3].text(), u"debug"_qs);
}

TEST(PLog, filters_qts_messages_like_its_own) {
    const PLogCapture capture;
    PLog::setFilter(u"debug,qt=error"_qs);
    qWarning("quiet");
    qCritical("loud");
    EXPECT_EQ(capture.texts(), QStringList{u"loud"_qs});
}
