// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PProfileController.h>

#include <apps/pcdview/window/FakeCameras.h>

#include <PCd/FakeProperty.h>

#include <PCore/PMinMaxRange.h>

#include <support/QtPrinters.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <functional>

namespace {

class PProfileControllerTest : public FakeCameras {
protected:
    PProfileControllerTest() {
        first->makeProperties = [this] {
            contrast = new FakeProperty("contrast", 5);
            contrast->rangeInDevice = QVariant::fromValue(PMinMaxRange<int>{0, 10, 1});
            return QList<PDeviceProperty*>{contrast};
        };
    }
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
        ASSERT_NE(contrast, nullptr);
    }

    /// The text of the open report; empty if there is none.
    QString report() const {
        const auto boxes = window.findChildren<QMessageBox*>();
        return boxes.isEmpty() ? QString() : boxes.first()->text();
    }

    /// The question that is open; null if there is none.
    QMessageBox* question() const { return window.findChild<QMessageBox*>(); }
    void answer(QMessageBox::StandardButton button) {
        ASSERT_NE(question(), nullptr);
        question()->button(button)->click();
    }
    /// What a warning says that is shown while this is done.
    QString warningText(const std::function<void()>& action) {
        QString warning;
        QTimer::singleShot(0, &window, [&] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            warning = box->text();
            box->reject();
        });
        action();
        return warning;
    }

    const QString file = path(u"profile.json"_qs);
    FakeProperty* contrast = nullptr; // the device's
    PProfileController* const controller =
        new PProfileController(actions, *tabs, &window); // the window's
    const QSignalSpy messages{controller, &PProfileController::messageChanged};
};

} // namespace

TEST_F(PProfileControllerTest, applies_what_it_saved) {
    controller->saveTo(file);
    EXPECT_EQ(lastMessage(messages), u"Saved "_qs + file);
    contrast->setValue(7);
    controller->apply(file);
    EXPECT_EQ(contrast->inDevice, QVariant(5));
    EXPECT_TRUE(report().contains(u": 1."_qs)) << report().toStdString();
}

TEST_F(PProfileControllerTest, shows_what_the_camera_did_not_take) {
    controller->saveTo(file);
    contrast->setValue(7);
    contrast->refuses = true;
    controller->apply(file);
    EXPECT_TRUE(report().contains(u"<b>Title of contrast</b>"_qs)) << report().toStdString();
}

TEST_F(PProfileControllerTest, warns_of_a_file_that_is_not_a_profile) {
    writeFile(file, "{");
    const QString warning = warningText([this] { controller->apply(file); });
    EXPECT_TRUE(warning.contains(file)) << warning.toStdString();
    EXPECT_EQ(contrast->calls.count(u"set"_qs), 0);
}

TEST_F(PProfileControllerTest, asks_before_it_applies_one_that_is_offered) {
    controller->saveTo(file);
    contrast->setValue(7);
    controller->offer(file);
    ASSERT_NE(question(), nullptr);
    EXPECT_EQ(question()->text(), u"Apply the settings in “profile.json” to Fake-1?"_qs);
    EXPECT_EQ(contrast->inDevice, QVariant(7));
    answer(QMessageBox::Apply);
    EXPECT_EQ(contrast->inDevice, QVariant(5));
}

TEST_F(PProfileControllerTest, leaves_the_camera_as_it_is_if_the_user_does_not_want_the_profile) {
    controller->saveTo(file);
    contrast->setValue(7);
    controller->offer(file);
    answer(QMessageBox::Cancel);
    EXPECT_EQ(contrast->inDevice, QVariant(7));
    emit tabs->currentStateChanged();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(question(), nullptr); // not a second time
}

TEST_F(PProfileControllerTest, applies_nothing_to_a_camera_unplugged_during_the_question) {
    controller->saveTo(file);
    controller->offer(file);
    unplugFirst();
    answer(QMessageBox::Apply);
    EXPECT_EQ(contrast->calls.count(u"set"_qs), 0);
}

TEST_F(PProfileControllerTest, asks_as_soon_as_a_camera_is_there) {
    controller->saveTo(file);
    tabs->closePage(tabs->currentPage());
    controller->offer(file);
    EXPECT_EQ(question(), nullptr);
    EXPECT_EQ(lastMessage(messages), u"Connect a camera to apply “profile.json”."_qs);
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-2"_qs));
    ASSERT_NE(question(), nullptr);
    EXPECT_TRUE(question()->text().contains(u"Fake-2"_qs));
}

TEST_F(PProfileControllerTest, warns_of_an_offered_file_that_is_not_a_profile_and_forgets_it) {
    writeFile(file, "{");
    const QString warning = warningText([this] { controller->offer(file); });
    EXPECT_TRUE(warning.contains(file)) << warning.toStdString();
    emit tabs->currentStateChanged();
    EXPECT_EQ(question(), nullptr);
}

TEST_F(PProfileControllerTest, suggests_a_file_name_made_of_the_camera) {
    cameras->alive.append(new FakeDevice("Fake", "3/4"));
    host.manager().updateDevices();
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-3/4"_qs));
    ASSERT_TRUE(QDir().mkpath(captureFolder()));
    QStringList suggested;
    QTimer::singleShot(0, &window, [&] {
        auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        suggested = dialog->selectedFiles();
        dialog->reject();
    });
    actions.saveProfile->trigger();
    EXPECT_EQ(suggested, QStringList(captureFolder() + u"/Fake-3_4.pcdprofile.json"_qs));
}

TEST_F(PProfileControllerTest, begins_where_the_last_profile_was_chosen) {
    ASSERT_TRUE(QDir().mkpath(captureFolder()) && QDir().mkpath(path(u"profiles"_qs)));
    const QString chosen = path(u"profiles/a.pcdprofile.json"_qs);
    QStringList folders;
    const auto inDialog = [&](QAction* action, const std::function<void(QFileDialog&)>& act) {
        QTimer::singleShot(0, &window, [&folders, act] {
            auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            folders.append(dialog->directory().path());
            act(*dialog);
        });
        action->trigger();
    };
    inDialog(actions.loadProfile, [](QFileDialog& dialog) { dialog.reject(); });
    inDialog(actions.saveProfile, [&](QFileDialog& dialog) {
        dialog.findChild<QLineEdit*>(u"fileNameEdit"_qs)->setText(chosen);
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    EXPECT_TRUE(QFile::exists(chosen));
    inDialog(actions.loadProfile, [](QFileDialog& dialog) { dialog.reject(); });
    EXPECT_EQ(folders, QStringList({captureFolder(), captureFolder(), path(u"profiles"_qs)}));
}

TEST_F(PProfileControllerTest, saves_nothing_of_a_camera_that_was_unplugged) {
    unplugFirst();
    controller->saveTo(file);
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_TRUE(lastMessage(messages).contains(u"unplugged"_qs));
}

TEST_F(PProfileControllerTest, reports_a_file_that_cannot_be_written) {
    controller->saveTo(path(u"no folder/profile.json"_qs));
    EXPECT_TRUE(lastMessage(messages).contains(u"no folder"_qs))
        << lastMessage(messages).toStdString();
}
