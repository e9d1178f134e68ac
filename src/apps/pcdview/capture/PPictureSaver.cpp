// SPDX-License-Identifier: MIT
#include <apps/pcdview/capture/PPictureSaver.h>

#include <apps/pcdview/options/PViewLog.h>

#include <QLocale>

#include <utility>

namespace {

PStatus savePicture(const PPictureSaver::Job& job) {
    const PStatus folder = PPictureFile::prepareFolder(job.path);
    if (!folder.isOk())
        return folder;
    return PPictureFile::save(job.path, job.frame.image.toQImage(), job.notes, job.existing,
                              PPictureFile::Content::Frame);
}

} // namespace

PPictureSaver::PPictureSaver(std::size_t byteLimit, QObject* parent)
    : QObject(parent)
    , m_work(byteLimit)
    , m_files([this] { m_work.waitUntilIdle(); }) {
}

PPictureSaver::~PPictureSaver() {
    m_isClosing = true;
    m_work.stop();
    m_results.runAll(); // the event loop will no longer deliver these
}

void PPictureSaver::save(Job job) {
    const std::size_t waiting = m_work.cost();
    const std::size_t bytes = job.frame.image.dataSize();
    const QString path = job.path;
    // The hop back to the GUI thread: from the thread that saves, or for a refused picture from
    // here, so that finished() is never emitted inside save().
    const auto postResult = [this, path](const QString& reason) {
        m_results.post([this, path, reason] { report(path, reason); });
    };
    const bool isTaken = m_work.push(
        bytes, [job = std::move(job)] { return savePicture(job); },
        [postResult](const PStatus& result) { postResult(result.reason()); });
    countUnsaved(1);
    if (!isTaken) {
        postResult(tr("cannot save \"%1\": %2 MB of pictures are waiting for the disk")
                       .arg(path, QLocale().toString(double(waiting) / 1e6, 'f', 1)));
    }
}

void PPictureSaver::waitUntilSaved() {
    m_work.waitUntilIdle();
    m_results.runAll();
}

void PPictureSaver::countUnsaved(int change) {
    m_unsaved += change;
    if (!m_isClosing)
        emit unsavedChanged(m_unsaved);
}

void PPictureSaver::report(const QString& path, const QString& reason) {
    if (!m_isClosing)
        emit finished(path, reason);
    else if (!reason.isEmpty())
        PViewLog::warning(reason); // the listeners are being destroyed
    countUnsaved(-1);
}

#include "moc_PPictureSaver.cpp"
