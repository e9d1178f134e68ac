// SPDX-License-Identifier: MIT
#include <apps/pcdview/capture/PRecordings.h>

#include <apps/pcdview/FakeGatedExposure.h>
#include <apps/pcdview/ViewPictures.h>

#include <apps/pcdview/capture/PCaptureFolder.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QCoreApplication>
#include <QHash>
#include <QSettings>

#include <future>

namespace {

/// Two live cameras whose frames wait to be written, with memory for three.
class PRecordingsTest : public FolderTest {
protected:
    PRecordingsTest() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path(u"settings"_qs));
        QCoreApplication::setOrganizationName(u"pcd"_qs);
        QCoreApplication::setApplicationName(u"pcdview"_qs);
        PCaptureFolder::setPath(path(u"captures"_qs));
        FakeGatedExposure exposure;
        exposure.gate = gate.get_future().share();
        for (FakeDevice* device : {&firstDevice, &secondDevice}) {
            device->makeProperties = [exposure] {
                return QList<PDeviceProperty*>{
                    new FakeProperty("extexposure", QVariant::fromValue(exposure))};
            };
        }
        QObject::connect(
            &recordings, &PRecordings::finished, &recordings,
            [this](const QString& camera, const QString& message) { messages[camera] = message; });
    }

    void SetUp() override {
        ASSERT_TRUE(first.attach(&firstDevice).isOk());
        ASSERT_TRUE(second.attach(&secondDevice).isOk());
        for (PViewCamera* camera : {&first, &second}) {
            ASSERT_TRUE(recordings.start(*camera, byHand(), 0).isOk());
            ASSERT_NE(recordings.of(camera), nullptr);
        }
    }

    static PRecordSettings byHand() {
        PRecordSettings settings;
        settings.end = PRecordSettings::End::ByHand;
        return settings;
    }

    const PImage picture =
        makePicture(33, 20, PDIP::ColorFormat::Bgr, [](int, int) { return QColor(Qt::red); });
    QHash<QString, QString> messages;
    FakeDevice firstDevice, secondDevice;
    PViewCamera first{{u"Fake-1"_qs, u"Fake"_qs, u"1"_qs, true}};
    PViewCamera second{{u"Fake-2"_qs, u"Fake"_qs, u"2"_qs, true}};
    PRecordings recordings{std::make_shared<PWorkBudget>(3 * picture.dataSize())};
    std::promise<void> gate; // destroyed first, which opens it: the recordings wait for their files
};

} // namespace

TEST_F(PRecordingsTest, share_the_memory_for_frames_that_wait) {
    for (int frame = 0; frame < 2; ++frame)
        firstDevice.processFrameImage(picture);
    secondDevice.processFrameImage(picture);
    EXPECT_EQ(recordings.of(&first)->progress().error, QString());
    EXPECT_EQ(recordings.of(&second)->progress().error, QString());
    secondDevice.processFrameImage(picture); // the fourth of all
    EXPECT_EQ(recordings.of(&first)->progress().error, QString());
    ASSERT_EQ(recordings.of(&second)->progress().tally.refused, 1U);
    const QString path = recordings.of(&second)->path();
    gate.set_value();
    recordings.of(&first)->stop();
    ASSERT_TRUE(waitUntil([this] { return recordings.running().isEmpty(); }));
    EXPECT_TRUE(messages[u"Fake-1"_qs].startsWith(u"Recorded 2 frames"_qs));
    EXPECT_TRUE(messages[u"Fake-2"_qs].contains(u"after 1 frame: the disk is slower"_qs));
    EXPECT_TRUE(messages[u"Fake-2"_qs].endsWith(u" (%1)"_qs.arg(path)))
        << messages[u"Fake-2"_qs].toStdString();
}

TEST_F(PRecordingsTest, count_a_single_frame_as_one) {
    firstDevice.processFrameImage(picture);
    gate.set_value();
    recordings.of(&first)->stop();
    ASSERT_TRUE(waitUntil([this] { return messages.contains(u"Fake-1"_qs); }));
    EXPECT_TRUE(messages[u"Fake-1"_qs].startsWith(u"Recorded 1 frame: "_qs))
        << messages[u"Fake-1"_qs].toStdString();
}
