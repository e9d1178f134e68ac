// SPDX-License-Identifier: MIT
#include <apps/pcdview/capture/PCapture.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/capture/PCaptureFolder.h>

#include <QFileInfo>

#include <algorithm>
#include <numeric>

namespace {

PPictureNotes makeNotes(const PCameraIdentity& camera, const PDeviceFrame& frame,
                        double pixelSize) {
    return PPictureNotes::of(camera, frame.stamp.get(),
                             pixelSize > 0 ? std::optional(pixelSize) : std::nullopt);
}

} // namespace

PCapture::PCapture(QObject* parent)
    : QObject(parent) {
    connect(&m_saver, &PPictureSaver::unsavedChanged, this, &PCapture::unsavedChanged);
    connect(&m_saver, &PPictureSaver::finished, this,
            [this](const QString& path, const QString& reason) {
                if (reason.isEmpty())
                    emit messageChanged(tr("Saved %1").arg(QFileInfo(path).fileName()));
                else
                    emit saveFailed(reason);
            });
}

void PCapture::follow(PViewCamera* camera, PixelSize pixelSize) {
    connect(camera, &PViewCamera::snapshotTaken, this,
            [this, camera, size = std::move(pixelSize)](const PDeviceFrame& frame) {
                --m_awaited[camera];
                saveStill(*camera, frame, size());
                emit awaitedChanged(awaited());
            });
    connect(camera, &PViewCamera::stateChanged, this, [this, camera] { noteUnplugged(*camera); });
    connect(camera, &QObject::destroyed, this, [this, camera, id = camera->identity().id] {
        giveUpAwaited(camera, [id](int lost) {
            return u"%1: %2"_qs.arg(id, tr("still pictures that had not arrived: %1").arg(lost));
        });
    });
}

void PCapture::takeStill(PViewCamera& camera) {
    const PStatus status = camera.takeSnapshot();
    if (status.isOk())
        m_awaited[&camera] = std::max(m_awaited[&camera], 0) + 1; // other pictures arrive as well
    emit awaitedChanged(awaited());
    emit messageChanged(status.isOk() ? tr("Taking a still…")
                                      : tr("No still taken: %1").arg(status.reason()));
}

int PCapture::awaited() const {
    return std::accumulate(m_awaited.cbegin(), m_awaited.cend(), 0,
                           [](int sum, int stills) { return sum + std::max(stills, 0); });
}

/// The camera will not deliver the stills that it owes.
void PCapture::giveUpAwaited(const PViewCamera* camera, const std::function<QString(int)>& reason) {
    const int lost = m_awaited.take(camera);
    if (lost > 0)
        emit saveFailed(reason(lost)); // first: closing the window depends on it
    emit awaitedChanged(awaited());
}

void PCapture::noteUnplugged(const PViewCamera& camera) {
    if (camera.state() != PViewCamera::State::Unplugged)
        return;
    giveUpAwaited(&camera, [&camera](int) {
        return camera.identity().id + u": "_qs +
               tr("No still taken: %1").arg(tr("the camera was unplugged"));
    });
}

void PCapture::saveStill(const PViewCamera& camera, const PDeviceFrame& frame, double pixelSize) {
    const QString path = PCaptureFolder::newPath(camera.identity().id, QDateTime::currentDateTime(),
                                                 PCaptureFolder::stillEnding());
    m_saver.save({path, frame, makeNotes(camera.identity(), frame, pixelSize),
                  PPictureFile::Existing::Keep});
}

void PCapture::saveFrame(const PCameraIdentity& camera, const PDeviceFrame& frame, double pixelSize,
                         const QString& path) {
    m_saver.save(
        {path, frame, makeNotes(camera, frame, pixelSize), PPictureFile::Existing::Replace});
}

#include "moc_PCapture.cpp"
