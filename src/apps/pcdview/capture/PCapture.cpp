// SPDX-License-Identifier: MIT
#include <apps/pcdview/capture/PCapture.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/capture/PCaptureFolder.h>

#include <QFileInfo>

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
                saveStill(*camera, frame, size());
            });
}

void PCapture::takeStill(PViewCamera& camera) {
    const PStatus status = camera.takeSnapshot();
    emit messageChanged(status.isOk() ? tr("Taking a still…")
                                      : tr("No still taken: %1").arg(status.reason()));
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
