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
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace {

class ProfileSessionTest : public ViewSession {
protected:
    const QString file = path(u"a.json"_qs);

    void SetUp() override {
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
        ASSERT_TRUE(QFile::exists(file));
    }

    QStringList putsBefore; ///< the posted saving
};

} // namespace

TEST_F(ProfileSessionTest, saving_one_sends_nothing_while_the_panel_shows_trigger) {
    click("pbTrigger");
    ASSERT_EQ(field("capturemode"), QVariant(1));
    save();
    EXPECT_FALSE(putsBefore.isEmpty());
    EXPECT_EQ(puts(), putsBefore);
}

TEST_F(ProfileSessionTest, one_saved_while_triggered_holds_the_exposure_of_the_video) {
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
