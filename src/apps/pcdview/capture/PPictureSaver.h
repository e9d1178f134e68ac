// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/picture/PPictureFile.h>
#include <apps/common/record/PFrameWriteQueue.h>

#include <PCd/frame/PDeviceFrame.h>

#include <QObject>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

/// Saves single pictures, one after the other, on a thread of its own: a large PNG takes seconds.
/// The GUI thread.
class PPictureSaver : public QObject {
    Q_OBJECT

public:
    struct Job {
        QString path;
        PDeviceFrame frame;
        PPictureNotes notes;
        PPictureFile::Existing existing = PPictureFile::Existing::Keep;
    };

    /// `byteLimit`: what may wait, in bytes of pixels.
    explicit PPictureSaver(std::size_t byteLimit = PFrameWriteQueue::defaultByteLimit(),
                           QObject* parent = nullptr);
    /// Saves what still waits, then returns.
    ~PPictureSaver() override;

    /// Saves a picture as its path's ending says, making the folder if need be; finished() tells
    /// how that went. A picture that finds no room is not saved; one larger than all of it is taken
    /// where nothing waits.
    void save(Job job);
    /// True while a picture waits or is being saved.
    bool isBusy() const;

signals:
    /// A picture was saved, or not: then the reason is not empty.
    void finished(const QString& path, const QString& reason);

protected:
    void customEvent(QEvent* event) override;

private:
    struct Result {
        QString path;
        QString reason;
    };

    void work();
    bool takeJob(Job& job);
    void finish(const Job& job, const QString& reason);
    void post(Result result);

    const std::size_t m_byteLimit;
    mutable std::mutex
        m_mutex; // the GUI thread leaves jobs and takes results, the worker the reverse
    std::condition_variable m_wake;
    std::deque<Job> m_jobs;
    std::deque<Result> m_results;
    std::size_t m_bytes = 0; ///< waiting or being saved
    bool m_working = false;
    bool m_ending = false;
    std::thread m_worker;
};
