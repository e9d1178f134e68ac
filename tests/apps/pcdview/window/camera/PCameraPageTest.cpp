// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/camera/PCameraPage.h>

#include <apps/pcdview/window/FakeCameras.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/view/PImageView.h>

#include <support/QtPrinters.h>

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QTest>

namespace {

/// The notices of the views that are painted.
class PaintedNotices : public QObject {
public:
    PaintedNotices() { qApp->installEventFilter(this); }

    QStringList all;

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        const auto* const view = qobject_cast<PImageView*>(object);
        if (view != nullptr && event->type() == QEvent::Paint)
            all.append(view->notice());
        return false;
    }
};

class PCameraPageTest : public FakeCameras {
protected:
    PCameraPageTest() {
        second->makeProperties = [this] {
            paintedUntilOpen = painted.all;
            bannerWhileOpening = banner();
            return QList<PDeviceProperty*>();
        };
    }

    void SetUp() override {
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }

    PCameraPage& page() { return *tabs->currentPage(); }
    QString banner() { return page().findChild<QLabel*>(u"banner"_qs)->text(); }
    QString notice() { return page().view().notice(); }

    PaintedNotices painted;
    QStringList paintedUntilOpen;
    QString bannerWhileOpening = u"not opened"_qs;
};

} // namespace

TEST_F(PCameraPageTest, says_that_a_camera_is_being_opened_before_that_takes_its_time) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-2"_qs));
    EXPECT_TRUE(paintedUntilOpen.contains(u"Opening Fake-2…"_qs));
    EXPECT_EQ(bannerWhileOpening, QString());
}

TEST_F(PCameraPageTest, says_that_the_first_picture_is_awaited) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    EXPECT_EQ(notice(), u"Waiting for the first picture…"_qs);
}

TEST_F(PCameraPageTest, awaits_no_picture_of_a_camera_that_does_not_open_or_is_stopped) {
    second->refusesLink = true;
    EXPECT_FALSE(tabs->open(u"Fake-2"_qs).isOk());
    EXPECT_EQ(notice(), QString());
    EXPECT_TRUE(banner().contains(u"cannot be opened"_qs));

    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    ASSERT_TRUE(page().camera().setLive(false).isOk());
    EXPECT_EQ(notice(), QString());
    ASSERT_TRUE(page().camera().setLive(true).isOk());
    EXPECT_EQ(notice(), u"Waiting for the first picture…"_qs);
}

TEST_F(PCameraPageTest, promises_no_picture_of_a_camera_unplugged_before_its_first) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    unplugFirst();
    EXPECT_EQ(banner(), u"This camera is unplugged. Plug it in again to continue with the same "
                        "settings."_qs);
}

TEST_F(PCameraPageTest, says_that_the_picture_of_an_unplugged_camera_is_its_last) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    ASSERT_NO_FATAL_FAILURE(showFrame(*first, halves(Qt::gray, Qt::gray)));
    unplugFirst();
    EXPECT_TRUE(banner().contains(u"Its last picture is shown"_qs)) << banner().toStdString();
}
