// SPDX-License-Identifier: MIT
#include <view/Viewer.h>

#include <apps/pcdview/PViewProgram.h>
#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/main/PMainWindow.h>

#include <QAction>
#include <QEventLoop>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>

namespace {

constexpr int lookEveryMs = 10;
constexpr int framesASecond = 30;
// Until the memory for frames has been touched, and that of an earlier camera released.
constexpr std::chrono::seconds warmUp(3);
constexpr std::chrono::seconds patience(60);

QJsonArray camerasWith(QSize sensor) {
    if (sensor.isEmpty())
        return {};
    const QJsonObject resolution{
        {u"width"_qs, sensor.width()}, {u"height"_qs, sensor.height()}, {u"fps"_qs, framesASecond}};
    return {QJsonObject{{u"id"_qs, u"ring-1"_qs},
                        {u"model"_qs, u"Simulated-Ring"_qs},
                        {u"serial"_qs, u"RING00001"_qs},
                        {u"flags"_qs, QJsonArray{u"USB30"_qs}},
                        {u"resolutions"_qs, QJsonArray{resolution}},
                        {u"exposure"_qs, QJsonObject{{u"default"_qs, 5000}, {u"auto"_qs, false}}},
                        {u"source"_qs, QJsonObject{{u"kind"_qs, u"ring"_qs}}}}};
}

PStatus writeScene(const QString& path, QSize sensor) {
    const QByteArray scene =
        QJsonDocument(QJsonObject{{u"cameras"_qs, camerasWith(sensor)}}).toJson();
    QFile file(path);
    const bool written = file.open(QIODevice::WriteOnly) && file.write(scene) == scene.size();
    return written ? PStatus(PStatus::Ok) : PStatus::failure(file.errorString());
}

PViewOptions optionsFor(const QString& scene) {
    PViewOptions options;
    options.sdk = u"sim"_qs;
    options.scene = scene;
    options.language = u"en"_qs;
    options.logFilter = u"warning,qt=error"_qs; // the offscreen platform warns of missing features
    return options;
}

} // namespace

bool runUntil(const std::function<bool()>& predicate, std::chrono::milliseconds deadline) {
    QEventLoop loop;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (predicate())
            loop.exit(0);
    });
    QTimer late;
    QObject::connect(&late, &QTimer::timeout, &loop, [&loop] { loop.exit(1); });
    late.start(deadline);
    look.start(lookEveryMs);
    return loop.exec() == 0;
}

Viewer::Viewer() = default;

Viewer::~Viewer() {
    if (m_program != nullptr)
        window().close();
}

PStatus Viewer::start(const QString& folder, QSize sensor) {
    const QString scene = folder + u"/scene.json"_qs;
    PStatus status = writeScene(scene, sensor);
    if (!status.isOk())
        return status;
    auto program = std::make_unique<PViewProgram>();
    status = program->start(optionsFor(scene));
    if (!status.isOk())
        return status;
    m_program = std::move(program);
    window().show();
    runUntil([] { return false; }, warmUp);
    if (sensor.isEmpty())
        return PStatus::Ok;
    return camera() != nullptr && camera()->ledger().produced > 0
               ? PStatus(PStatus::Ok)
               : PStatus::failure(u"the camera sends no frames"_qs);
}

QWidget& Viewer::window() const {
    return m_program->window();
}

PViewCamera* Viewer::camera() const {
    PCameraPage* const page = m_program->window().desk().currentPage();
    return page == nullptr ? nullptr : &page->camera();
}

PImageView* Viewer::view() const {
    PCameraPage* const page = m_program->window().desk().currentPage();
    return page == nullptr ? nullptr : &page->view();
}

QAction* Viewer::action(const QString& name) const {
    return window().findChild<QAction*>(name);
}

QWidget* Viewer::widget(const QString& name) const {
    return window().findChild<QWidget*>(name);
}

PFrameLedger Viewer::stopAndSettle() {
    action(u"live"_qs)->setChecked(false);
    runUntil([this] { return camera()->ledger().waiting == 0; }, patience);
    return camera()->ledger();
}
