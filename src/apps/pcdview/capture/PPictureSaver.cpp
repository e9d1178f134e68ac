// SPDX-License-Identifier: MIT
#include <apps/pcdview/capture/PPictureSaver.h>

#include <QCoreApplication>
#include <QEvent>
#include <apps/pcdview/options/PViewLog.h>

#include <exception>
#include <utility>

namespace {

PStatus savePicture(const PPictureSaver::Job& job) {
    const PStatus folder = PPictureFile::prepareFolder(job.path);
    if (!folder.isOk())
        return folder;
    return PPictureFile::save(job.path, job.frame.image.toQImage(), job.notes, job.existing,
                              PPictureFile::Effort::Fast);
}

QString reasonOfFailure(const PPictureSaver::Job& job) {
    try {
        return savePicture(job).reason();
    } catch (const std::exception& error) {
        return QString::fromLocal8Bit(error.what());
    }
}

} // namespace

PPictureSaver::PPictureSaver(std::size_t byteLimit, QObject* parent)
    : QObject(parent)
    , m_byteLimit(byteLimit)
    , m_worker([this] { work(); }) {
}

PPictureSaver::~PPictureSaver() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_wake.notify_all();
    m_worker.join();
    // No listener is left for its results.
    for (const Result& result : m_results) {
        if (!result.reason.isEmpty())
            PViewLog::warning(result.reason);
    }
}

void PPictureSaver::save(Job job) {
    {
        const std::lock_guard lock(m_mutex);
        const std::size_t bytes = job.frame.image.dataSize();
        if (m_bytes > 0 && m_bytes + bytes > m_byteLimit) {
            return post({job.path, tr("cannot save \"%1\": %2 MB of pictures wait for the disk")
                                       .arg(job.path)
                                       .arg(double(m_bytes) / 1e6, 0, 'f', 1)});
        }
        m_bytes += bytes;
        m_jobs.push_back(std::move(job));
    }
    m_wake.notify_all();
}

bool PPictureSaver::isBusy() const {
    const std::lock_guard lock(m_mutex);
    return m_working || !m_jobs.empty();
}

void PPictureSaver::customEvent(QEvent*) {
    std::deque<Result> results;
    {
        const std::lock_guard lock(m_mutex);
        results.swap(m_results);
    }
    for (const Result& result : results)
        emit finished(result.path, result.reason);
}

void PPictureSaver::work() {
    for (Job job; takeJob(job); job = Job())
        finish(job, reasonOfFailure(job));
}

bool PPictureSaver::takeJob(Job& job) {
    std::unique_lock lock(m_mutex);
    m_wake.wait(lock, [this] { return m_ending || !m_jobs.empty(); });
    m_working = !m_jobs.empty();
    if (!m_working)
        return false;
    job = std::move(m_jobs.front());
    m_jobs.pop_front();
    return true;
}

void PPictureSaver::finish(const Job& job, const QString& reason) {
    const std::lock_guard lock(m_mutex);
    m_working = false;
    m_bytes -= job.frame.image.dataSize();
    post({job.path, reason});
}

/// Locked.
void PPictureSaver::post(Result result) {
    m_results.push_back(std::move(result));
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}
