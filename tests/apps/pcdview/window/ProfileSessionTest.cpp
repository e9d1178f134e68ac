// SPDX-License-Identifier: MIT
// Profiles in the viewer, used as the user does, with simulated cameras.
#include <apps/pcdview/window/ViewSession.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/window/main/PMainWindow.h>

#include <PCd/device/PDevice.h>
#include <PCd/profile/PDeviceProfileFile.h>
#include <PCd/profile/PDeviceProfilePlan.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/value/PCompositeFields.h>

#include <support/QtPrinters.h>

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace {

class ProfileSessionTest : public ViewSession {
protected:
    QString file = path(u"a.json"_qs);

    void startOne() {
        QJsonObject triggered = camera();
        triggered.insert(u"flags"_qs, QJsonArray{u"TRIGGER_SOFTWARE"_qs});
        start({triggered});
        ASSERT_TRUE(waitForNewFrames());
    }
    void click(const char* button) {
        QTest::mouseClick(&widget<QPushButton>(QString::fromLatin1(button)), Qt::LeftButton);
    }
    PDeviceProperty& exposure() { return *inFront().device()->getProperty("extexposure"); }
    QVariant field(const char* name) {
        return PCompositeFields::read(exposure().valueInner(), QString::fromLatin1(name));
    }
    void setField(const char* name, const QString& text) {
        QVariant value = exposure().valueInner();
        ASSERT_TRUE(PCompositeFields::write(value, QString::fromLatin1(name), text).isOk());
        exposure().setValue(value);
    }
    /// Saves a profile through the action and its dialog. Just before that, the camera's gain is
    /// changed without the host.
    void save() {
        QTimer::singleShot(0, [this] {
            ASSERT_TRUE(inFront().device()->getProperty("autoexpogain")->trySetValue(200));
            putsBefore = puts();
            auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            dialog->selectFile(file);
            dialog->findChild<QLineEdit*>(u"fileNameEdit"_qs)->setText(file);
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        widget<QAction>(u"saveProfile"_qs).trigger();
    }

    QStringList putsBefore; ///< the posted saving
};

} // namespace

TEST_F(ProfileSessionTest, one_on_the_command_line_is_offered_to_the_camera_it_is_of) {
    const QJsonArray cameras{camera(), camera(u"cam-2"_qs, u"S0002"_qs)};
    start(cameras, {u"--camera"_qs, u"1"_qs});
    PDeviceProperty* const contrast = inFront().device()->getProperty("contrast");
    ASSERT_NE(contrast, nullptr);
    contrast->setValue(31);
    ASSERT_TRUE(PDeviceProfileFile::save(*inFront().device(), file).isOk());
    end();

    start(cameras, {file});
    EXPECT_EQ(inFront().identity().serial, u"S0002"_qs);
    ASSERT_TRUE(waitUntil([this] { return window().findChild<QMessageBox*>() != nullptr; }));
    EXPECT_NE(inFront().device()->getProperty("contrast")->tryGetValue(), QVariant(31));
    QTest::keyClick(window().findChild<QMessageBox*>(), Qt::Key_Return);
    EXPECT_EQ(inFront().device()->getProperty("contrast")->tryGetValue(), QVariant(31));
}

TEST_F(ProfileSessionTest, a_named_camera_comes_before_the_one_of_the_profile) {
    start({camera(), camera(u"cam-2"_qs, u"S0002"_qs)}, {u"--camera"_qs, u"1"_qs});
    ASSERT_EQ(inFront().identity().serial, u"S0002"_qs);
    ASSERT_TRUE(PDeviceProfileFile::save(*inFront().device(), file).isOk());
    end();
    start({camera(), camera(u"cam-2"_qs, u"S0002"_qs)}, {u"--camera"_qs, u"0"_qs, file});
    EXPECT_EQ(inFront().identity().serial, u"S0001"_qs);
}

TEST_F(ProfileSessionTest, saving_one_under_a_plain_name_gives_it_the_ending_that_desktops_know) {
    ASSERT_NO_FATAL_FAILURE(startOne());
    file = path(u"slide"_qs);
    save();
    EXPECT_TRUE(QFile::exists(path(u"slide.pcdprofile.json"_qs)));
}

TEST_F(ProfileSessionTest, saving_one_sends_nothing_while_the_panel_shows_trigger) {
    ASSERT_NO_FATAL_FAILURE(startOne());
    click("pbTrigger");
    ASSERT_EQ(field("capturemode"), QVariant(1));
    save();
    ASSERT_TRUE(QFile::exists(file));
    EXPECT_FALSE(putsBefore.isEmpty());
    EXPECT_EQ(puts(), putsBefore);
}

TEST_F(ProfileSessionTest, one_saved_while_triggered_holds_the_exposure_of_the_video) {
    ASSERT_NO_FATAL_FAILURE(startOne());
    setField("exp", u"20"_qs);
    click("pbTrigger");
    save();
    EXPECT_EQ(field("exp"), QVariant(20.0));
    click("pbVideo");
    EXPECT_EQ(inFront().device()->getProperty("autoexpottime")->tryGetValue(), QVariant(20'000));
    setField("exp", u"30"_qs);
    PDeviceProfile profile;
    ASSERT_TRUE(PDeviceProfileFile::read(file, profile).isOk());
    PDeviceProfilePlan plan(*inFront().device());
    ASSERT_TRUE(plan.make(profile).isOk());
    EXPECT_TRUE(plan.apply().isComplete());
    EXPECT_EQ(field("exp"), QVariant(20.0));
}
