// SPDX-License-Identifier: MIT
#include <apps/common/crash/PCrashCalls.h>

#include <apps/common/crash/PCrashWriter.h>

#include <PCore/call/PNamedCall.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QFile>

#include <future>
#include <thread>

#include <unistd.h>

namespace {

constexpr PNamedCall<int(int, const char*)> crashTestSet("Camera_set");
constexpr PNamedCall<void(void*)> crashTestClose("Camera_close");

void setInCrashTest(int value) {
    const auto inProgress = crashTestSet.begin(value, "gain");
}

class PCrashCallsTest : public FolderTest {
protected:
    QByteArray written() const {
        QFile file(path(u"report"_qs));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        PCrashWriter writer(file.handle());
        PCrashCalls::writeTo(writer);
        return readFile(file.fileName());
    }
};

TEST_F(PCrashCallsTest, the_calls_of_a_thread_are_in_their_order_and_the_last_may_be_in_progress) {
    QByteArray report;
    int thread = 0;
    std::thread([&] {
        thread = ::gettid();
        setInCrashTest(1);
        setInCrashTest(-2);
        const auto inProgress = crashTestClose.begin(nullptr);
        report = written();
    }).join();
    EXPECT_TRUE(report.contains("Thread " + QByteArray::number(thread) +
                                ", in which the fault was:\n"
                                "  Camera_set(1, \"gain\")\n"
                                "  Camera_set(-2, \"gain\")\n"
                                "  Camera_close(null), in progress\n"))
        << report.toStdString();
}

TEST_F(PCrashCallsTest, the_calls_of_other_threads_are_apart_until_they_end) {
    std::promise<int> began;
    std::promise<void> released;
    std::thread other([&] {
        setInCrashTest(3);
        const auto inProgress = crashTestSet.begin(4, "");
        began.set_value(::gettid());
        released.get_future().wait();
    });
    const QByteArray number = QByteArray::number(began.get_future().get());
    const QByteArray during = written();
    released.set_value();
    other.join();
    EXPECT_TRUE(during.contains("Thread " + number +
                                ":\n"
                                "  Camera_set(3, \"gain\")\n"
                                "  Camera_set(4, \"\"), in progress\n"))
        << during.toStdString();
    const QByteArray after = written();
    EXPECT_FALSE(after.contains("Thread " + number)) << after.toStdString();
    EXPECT_TRUE(after.contains("A thread that has ended:\n"
                               "  Camera_set(3, \"gain\")\n"
                               "  Camera_set(4, \"\")\n"))
        << after.toStdString();
}

} // namespace
