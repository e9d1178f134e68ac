// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/ViewSession.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/capture/PCaptureFolder.h>
#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/main/PMainWindow.h>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QJsonDocument>
#include <QLabel>
#include <QSettings>
#include <QTest>
#include <QTranslator>

#include <array>

#include <dlfcn.h>

namespace {

/// A function of the simulated SDK that the program has loaded.
template <typename Function>
Function* simFunction(const char* name) {
    void* const library = dlopen(qgetenv("TOUPCAM_LIBRARY").constData(), RTLD_NOW | RTLD_NOLOAD);
    return reinterpret_cast<Function*>(dlsym(library, name));
}

} // namespace

ViewSession::ViewSession() {
    QCoreApplication::setOrganizationName(u"pcd"_qs);
    QCoreApplication::setApplicationName(u"pcdview"_qs);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path(u"settings"_qs));
    PCaptureFolder::setPath(captureFolder());
    // A call that takes long because the machine is busy is not to be reported.
    qputenv("PCD_CALL_SECONDS", "3600");
}

ViewSession::~ViewSession() {
    end();
}

QJsonObject ViewSession::camera(const QString& id, const QString& serial) {
    const QJsonObject resolution{{u"width"_qs, 320}, {u"height"_qs, 240}, {u"fps"_qs, 50}};
    const QJsonObject smaller{{u"width"_qs, 160}, {u"height"_qs, 120}, {u"fps"_qs, 50}};
    return {{u"id"_qs, id},
            {u"model"_qs, u"Small"_qs},
            {u"serial"_qs, serial},
            {u"resolutions"_qs, QJsonArray{resolution, smaller}},
            {u"exposure"_qs, QJsonObject{{u"default"_qs, 5000}, {u"auto"_qs, false}}},
            {u"source"_qs, QJsonObject{{u"kind"_qs, u"specimen"_qs}}}};
}

void ViewSession::start(const QJsonArray& cameras, const QStringList& words) {
    const QString scene = path(u"scene.json"_qs);
    writeFile(
        scene,
        QJsonDocument(QJsonObject{{u"cameras"_qs, cameras}, {u"faults"_qs, faults}}).toJson());
    PViewOptions options;
    QString answer;
    const QStringList program{u"pcdview"_qs, u"--sdk"_qs,   u"sim"_qs, u"--lang"_qs,
                              u"en"_qs,      u"--scene"_qs, scene};
    ASSERT_TRUE(PViewOptions::parse(program + words, options, answer).isOk());
    m_program = std::make_unique<PViewProgram>();
    const PStatus status = m_program->start(options);
    ASSERT_TRUE(status.isOk()) << status.reason().toStdString();
    window().show();
}

void ViewSession::end() {
    if (m_program == nullptr)
        return;
    window().closeUnasked(); // after a failed test, nothing would answer a question
    m_program.reset();
    // A process has one language; the next test may need another.
    for (QTranslator* translator : QCoreApplication::instance()->findChildren<QTranslator*>())
        delete translator;
}

PCameraTabs& ViewSession::cameraTabs() {
    return window().cameraTabs();
}

PCameraPage& ViewSession::page() {
    return *cameraTabs().currentPage();
}

PViewCamera& ViewSession::inFront() {
    return page().camera();
}

QStringList ViewSession::cutOff() {
    QStringList texts;
    // Layouts need several iterations to settle, and texts change while frames arrive.
    waitUntil([&] {
        texts = cutOffNow();
        return texts.isEmpty();
    });
    return texts;
}

QStringList ViewSession::cutOffNow() {
    QCoreApplication::processEvents();
    // The last text that was set has not been laid out yet.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QStringList texts;
    for (const QLabel* label : window().findChildren<QLabel*>()) {
        const int height =
            label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
        const bool isWide = !label->wordWrap() && label->width() < label->sizeHint().width();
        if (label->isVisible() && !label->text().isEmpty() && (isWide || label->height() < height))
            texts.append(label->text());
    }
    for (const auto* button : window().findChildren<QAbstractButton*>()) {
        if (button->isVisible() && !button->text().isEmpty() &&
            button->width() < button->minimumSizeHint().width())
            texts.append(button->text());
    }
    return texts;
}

bool ViewSession::waitForNewFrames() {
    // One that was already in delivery, and one more.
    const quint64 enough = inFront().ledger().produced + 2;
    return waitUntil([&] {
        const auto& stamp = inFront().frame().stamp;
        return stamp != nullptr && stamp->sequence >= enough;
    });
}

void ViewSession::drag(QPoint from, QPoint to) {
    PImageView* const view = &page().view();
    QTest::mousePress(view, Qt::LeftButton, {}, from);
    QTest::mouseMove(view, to);
    QTest::mouseRelease(view, Qt::LeftButton, {}, to);
}

bool ViewSession::hold(const char* camera) {
    return simFunction<int(const char*, int)>("ToupcamSim_holdFrames")(camera, 1) == 1;
}

bool ViewSession::unplug(const char* camera) {
    return simFunction<int(const char*)>("ToupcamSim_unplug")(camera) == 1;
}

bool ViewSession::plug(const char* camera) {
    return simFunction<int(const char*)>("ToupcamSim_plug")(camera) == 1;
}

QStringList ViewSession::calls(const QString& text) {
    auto* const journal = simFunction<unsigned(unsigned, char*, unsigned)>("ToupcamSim_journal");
    QStringList lines;
    for (unsigned index = 0; index < journal(0, nullptr, 0); ++index) {
        std::array<char, 512> line{};
        journal(index, line.data(), unsigned(line.size()));
        const QString call = QString::fromUtf8(line.data());
        if (call.contains(text))
            lines.append(call);
    }
    return lines;
}

void ViewSession::fail(const char* function, unsigned calls) {
    constexpr int failed = int(0x80004005); // E_FAIL
    simFunction<void(const char*, unsigned, unsigned, int)>("ToupcamSim_failCall")(function, 0,
                                                                                   calls, failed);
}

void ViewSession::delay(const char* function, unsigned ms) {
    simFunction<void(const char*, unsigned)>("ToupcamSim_delayCall")(function, ms);
}

QWidget& ViewSession::widgets() {
    return window();
}
