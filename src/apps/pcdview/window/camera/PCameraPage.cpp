// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/camera/PCameraPage.h>

#include <apps/pcdview/camera/PPixelScale.h>
#include <apps/pcdview/camera/PRegionMap.h>
#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/view/PImageView.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceRoles.h>
#include <PCd/property/PDeviceProperty.h>

#include <QLabel>
#include <QSettings>
#include <QVBoxLayout>

namespace {

constexpr double smallestPixel = 0.0001; // micrometres: light resolves nothing smaller
constexpr double largestPixel = 1000;

PDeviceProperty* findRegion(const PViewCamera& camera) {
    return camera.device() == nullptr ? nullptr
                                      : PDeviceRoles::property(*camera.device(), PRole::Region);
}

QString regionText(const QRect& region) {
    return u"%1, %2, %3 × %4"_qs.arg(QString::number(region.x()), QString::number(region.y()),
                                     QString::number(region.width()),
                                     QString::number(region.height()));
}

} // namespace

PCameraPage::PCameraPage(PViewCamera* camera, QWidget* parent)
    : QWidget(parent)
    , m_camera(camera)
    , m_banner(new QLabel)
    , m_view(new PImageView) {
    camera->setParent(this);
    m_banner->setObjectName(u"banner"_qs);
    m_banner->setWordWrap(true);
    m_banner->setTextFormat(Qt::PlainText);
    m_banner->setMargin(8);
    m_banner->setAutoFillBackground(true);
    m_banner->setBackgroundRole(QPalette::ToolTipBase);
    m_banner->setForegroundRole(QPalette::ToolTipText);
    m_view->setPixelSize(pixelSizeOfPicture());
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_banner);
    column->addWidget(m_view, 1);
    connect(camera, &PViewCamera::stateChanged, this, &PCameraPage::showState);
    connect(camera, &PViewCamera::snapshotTaken, this, &PCameraPage::showState);
    connect(camera, &PViewCamera::frameChanged, this, &PCameraPage::showFrame);
    showState();
}

void PCameraPage::showFrame(const PDeviceFrame& frame) {
    m_view->setImage(frame.image);
    const QSize size(int(frame.image.width()), int(frame.image.height()));
    // Only if one has changed: the modes are read from the camera, which must not happen for every
    // frame.
    if (size == m_scaledSize && frame.stamp->settings == m_scaledSettings)
        return;
    m_scaledSize = size;
    m_scaledSettings = frame.stamp->settings;
    m_pixelScale = PPixelScale::of(*m_camera->device(), size);
    m_view->setPixelSize(pixelSizeOfPicture());
}

PStatus PCameraPage::open(PDevice* device) {
    m_view->setNotice(tr("Opening %1…").arg(m_camera->identity().id));
    m_view->repaint(); // now: this thread is busy until the camera is open
    const PStatus status = m_camera->attach(device);
    showOpened(status);
    return status;
}

void PCameraPage::showOpened(const PStatus& status) {
    setMessage(status.isOk() ? QString()
                             : tr("This camera cannot be opened: %1").arg(status.reason()));
}

void PCameraPage::setMessage(const QString& message) {
    m_message = message;
    showState();
}

double PCameraPage::pixelSize() const {
    const double size = QSettings().value(pixelSizeKey(), 0.0).toDouble();
    return size >= smallestPixel && size <= largestPixel ? size : 0; // users can edit the file
}

void PCameraPage::setPixelSize(double micrometres) {
    QSettings().setValue(pixelSizeKey(), micrometres);
    m_view->setPixelSize(pixelSizeOfPicture());
}

QString PCameraPage::pixelSizeKey() const {
    return u"cameras/%1/pixelSize"_qs.arg(m_camera->identity().id);
}

bool PCameraPage::hasRegions() const {
    return findRegion(*m_camera) != nullptr;
}

void PCameraPage::useRegion(const QRect& inPicture) {
    PDeviceProperty* const property = findRegion(*m_camera);
    if (property == nullptr)
        return setMessage(tr("The region of this camera cannot be set."));
    property->updateValueFromDevice();
    const PRegionMap map = PRegionMap::of(*m_camera->device(), m_view->geometryOfView().picture());
    const auto range = property->rangeInner().value<PScanAreaRange>();
    const QRect region = PRegionMap::snapped(map.toSensor(inPicture), range);
    if (region.isEmpty())
        return setMessage(tr("The camera does not accept this region."));
    setRegion(region);
}

void PCameraPage::useWholeSensor() {
    PDeviceProperty* const property = findRegion(*m_camera);
    if (property == nullptr)
        return setMessage(tr("The region of this camera cannot be set."));
    property->updateValueFromDevice();
    setRegion(property->rangeInner().value<PScanAreaRange>().bounds);
}

void PCameraPage::setRegion(const QRect& onSensor) {
    PDeviceProperty* const property = findRegion(*m_camera);
    property->setValue(onSensor);
    if (!property->valueInner().isValid())
        return setMessage(tr("The camera did not report its region."));
    const QRect now = property->valueInner().toRect();
    setMessage(now == onSensor ? QString()
                               : tr("The camera did not accept the region %1; it uses %2.")
                                     .arg(regionText(onSensor), regionText(now)));
}

void PCameraPage::showState() {
    const QStringList sentences = stateSentences();
    m_banner->setText(sentences.join(u'\n'));
    m_banner->setVisible(!sentences.isEmpty());
    m_view->setStale(m_camera->device() == nullptr);
    m_view->setNotice(noticeText());
}

QString PCameraPage::noticeText() const {
    return m_camera->state() == PViewCamera::State::Live ? tr("Waiting for the first picture…")
                                                         : QString();
}

QString PCameraPage::unpluggedText() const {
    return m_camera->frame().image.isNull()
               ? tr("This camera is unplugged. Plug it in again to continue with the same "
                    "settings.")
               : tr("This camera is unplugged. Its last picture is shown; plug it in again to "
                    "continue with the same settings.");
}

QStringList PCameraPage::stateSentences() const {
    QStringList sentences;
    if (!m_message.isEmpty())
        sentences.append(m_message);
    if (m_message.isEmpty() && m_camera->state() == PViewCamera::State::Unplugged)
        sentences.append(unpluggedText());
    if (m_camera->isTriggered()) {
        const QString sentence =
            m_camera->isAwaitingTriggers()
                ? tr("Triggered capture: waiting for triggers. Pictures taken: %1")
                : tr("Triggered capture: run in progress. Pictures taken: %1");
        sentences.append(sentence.arg(m_camera->triggeredPictures()));
    }
    return sentences + m_camera->notes();
}

#include "moc_PCameraPage.cpp"
