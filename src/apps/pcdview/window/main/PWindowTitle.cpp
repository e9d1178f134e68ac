// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/main/PWindowTitle.h>

#include <apps/pcdview/camera/PViewCamera.h>

QString PWindowTitle::toText(const PViewCamera* camera) {
    QStringList parts;
    if (camera != nullptr) {
        if (camera->identity().simulated)
            parts.append(tr("Simulated camera"));
        parts.append(camera->identity().id);
        if (camera->state() == PViewCamera::State::Unplugged)
            parts.append(tr("unplugged"));
    }
    return (parts << u"pcdview"_qs).join(u" — "_qs);
}
