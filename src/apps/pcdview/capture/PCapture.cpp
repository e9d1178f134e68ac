// SPDX-License-Identifier: MIT
#include <apps/pcdview/capture/PCapture.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/capture/PCaptureFolder.h>

#include <QFileInfo>

#include <algorithm>

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
            });
    connect(camera, &PViewCamera::stateChanged, this, [this, camera] { noteUnplugged(*camera); });
    connect(camera, &QObject::destroyed, this, [this, camera] { m_awaited.remove(camera); });
}

void PCapture::takeStill(PViewCamera& camera) {
    const PStatus status = camera.takeSnapshot();
    if (status.isOk())
        m_awaited[&camera] = std::max(m_awaited[&camera], 0) + 1; // other pictures arrive as well
    emit messageChanged(status.isOk() ? tr("Taking a still…")
                                      : tr("No still taken: %1").arg(status.reason()));
}

void PCapture::noteUnplugged(const PViewCamera& camera) {
    if (camera.state() == PViewCamera::State::Unplugged && m_awaited.take(&camera) > 0) {
        emit saveFailed(camera.identity().id + u": "_qs +
                        tr("No still taken: %1").arg(tr("the camera was unplugged")));
    }
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
