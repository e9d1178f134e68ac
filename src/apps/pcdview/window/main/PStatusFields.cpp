// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/main/PStatusFields.h>

#include <apps/common/camera/PSensorTemperature.h>
#include <apps/pcdview/camera/PExposureText.h>
#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/panels/PLedgerText.h>

#include <PCd/device/PDevice.h>

#include <QLabel>
#include <QLocale>
#include <QStatusBar>

namespace {

QString toZoomText(const PImageView& view) {
    const double percent = view.geometryOfView().scale() * 100;
    return QLocale().toString(percent, 'f', percent < 10 ? 1 : 0) + u" %"_qs;
}

/// The temperature as text; empty if the camera does not report it.
QString toTemperatureText(const PDevice* device) {
    const auto degrees = device == nullptr ? std::nullopt : PSensorTemperature::of(*device);
    return degrees ? QLocale().toString(*degrees, 'f', 1) + u" °C"_qs : QString();
}

QString toSizeText(const PImage& image) {
    return image.isNull()
               ? QString()
               : u"%1 × %2"_qs.arg(QString::number(image.width()), QString::number(image.height()));
}

} // namespace

QString PStatusFields::toPaceText(const PViewCamera& camera) {
    switch (camera.state()) {
    case PViewCamera::State::Unplugged:
        return tr("unplugged");
    case PViewCamera::State::NotOpen:
        return tr("not open");
    case PViewCamera::State::Paused:
        return tr("stopped");
    case PViewCamera::State::Live:
        break;
    }
    if (const auto left = camera.untilNextPicture())
        return waitingText(*left);
    return tr("%1 fps, %2 MB/s")
        .arg(QLocale().toString(camera.framesPerSecond(), 'f', 1),
             QLocale().toString(camera.megabytesPerSecond(), 'f', 0));
}

QString PStatusFields::waitingText(std::chrono::seconds left) {
    if (left.count() == 0)
        return tr("next picture is due");
    if (left < std::chrono::minutes(2))
        return tr("next picture in %1 s").arg(left.count());
    return tr("next picture in %1 min %2 s")
        .arg(QString::number(left.count() / 60), QString::number(left.count() % 60));
}

PStatusFields::PStatusFields(QStatusBar* bar)
    : QObject(bar)
    , m_bar(bar)
    , m_unsaved(addField(bar, "unsaved"))
    , m_pixel(addField(bar, "pixel"))
    , m_zoom(addField(bar, "zoom"))
    , m_size(addField(bar, "size"))
    , m_pace(addField(bar, "pace"))
    , m_exposure(addField(bar, "exposure"))
    , m_temperature(addField(bar, "temperature"))
    , m_ledger(addField(bar, "ledger")) {
    m_temperature->setToolTip(tr("Temperature of the sensor"));
    m_unsaved->setToolTip(tr("Pictures that wait or are being saved"));
    // The fields that are not always shown must not make the window wider. Being the first, they do
    // not move the others either.
    m_unsaved->setMinimumWidth(1);
    m_pixel->setMinimumWidth(1);
}

QLabel* PStatusFields::addField(QStatusBar* bar, const char* name) {
    auto* const label = new QLabel;
    label->setObjectName(QString::fromLatin1(name));
    label->setContentsMargins(4, 0, 4, 0);
    bar->addPermanentWidget(label);
    return label;
}

void PStatusFields::showCamera(const PCameraPage* page) {
    if (page == nullptr) {
        for (QLabel* label : {m_pixel, m_zoom, m_size, m_pace, m_exposure, m_temperature, m_ledger})
            label->clear();
        return;
    }
    const PViewCamera& camera = page->camera();
    m_pace->setText(toPaceText(camera));
    m_size->setText(toSizeText(camera.frame().image));
    m_exposure->setText(camera.device() == nullptr ? QString()
                                                   : PExposureText::of(*camera.device()));
    m_temperature->setText(toTemperatureText(camera.device()));
    m_temperature->setVisible(!m_temperature->text().isEmpty());
    m_ledger->setText(PLedgerText::brief(camera.ledger()));
    m_ledger->setToolTip(PLedgerText::summary(camera.ledger()));
}

void PStatusFields::showView(const PCameraPage* page) {
    m_zoom->setText(toZoomText(page->view()));
    const auto pixel = page->view().pixelUnderCursor();
    m_pixel->setText(pixel ? pixel->text() : QString());
}

void PStatusFields::showUnsaved(int pictures) {
    m_unsaved->setText(pictures == 0 ? QString() : tr("To be saved: %1").arg(pictures));
}

#include "moc_PStatusFields.cpp"
