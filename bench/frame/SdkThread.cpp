// SPDX-License-Identifier: MIT
#include <frame/SdkThread.h>

#include <figure/Stopwatch.h>

#include <QEventLoop>

#include <chrono>
#include <exception>
#include <thread>

void SdkThread::run(const Work& work) {
    QEventLoop loop;
    std::exception_ptr failure;
    std::thread thread([&] {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
        // The end of the work, from its thread to the loop's.
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    thread.join();
    if (failure)
        std::rethrow_exception(failure);
}

void SdkThread::repeat(int times, const Work& work, const std::function<bool()>& isReady) {
    for (int i = 0; i < times; ++i) {
        work();
        do
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        while (!isReady());
    }
}

double SdkThread::measureMs(int times, const Work& work, const std::function<bool()>& isReady) {
    double sum = 0;
    const auto measured = [&] { sum += Stopwatch::threadMs(work); };
    run([&] { repeat(times, measured, isReady); });
    return sum / times;
}
