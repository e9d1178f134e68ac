// SPDX-License-Identifier: MIT
#include <apps/pcdview/capture/PPictureSaver.h>

#include <apps/common/hang/PFilesInProgress.h>
#include <apps/pcdview/ViewPictures.h>

#include <support/FolderTest.h>
#include <support/PLogCapture.h>
#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QDir>
#include <QImage>
#include <QLocale>
#include <QScopeGuard>

#include <map>
#include <thread>
#include <vector>

namespace {

class PPictureSaverTest : public FolderTest {
protected:
    void follow(PPictureSaver& saver) {
        QObject::connect(
            &saver, &PPictureSaver::finished, &saver,
            [this](const QString& file, const QString& reason) { reasons[file] = reason; });
    }

    PPictureSaver::Job jobFor(const QString& name) const {
        const PImage image = makePicture(33, 20, PDIP::ColorFormat::Bgr,
                                         [](int x, int) { return QColor(x, 200, 3); });
        return {path(name), {image, nullptr}, {}, PPictureFile::Existing::Keep};
    }

    /// A picture that takes long enough to save for the next one to arrive meanwhile.
    PPictureSaver::Job largeJob() const {
        PPictureSaver::Job job = jobFor(u"large.png"_qs);
        job.frame.image = makePicture(1200, 1000, PDIP::ColorFormat::Bgr, [](int x, int y) {
            return QColor(x % 251, y % 241, x * y % 239);
        });
        return job;
    }

    /// The reason for a picture that finds no room beside one of 3.6 MB.
    QString reasonWithoutRoom() {
        PPictureSaver saver(1); // one at a time
        follow(saver);
        const PPictureSaver::Job large = largeJob(); // making one takes longer than saving it
        const PPictureSaver::Job small = jobFor(u"small.png"_qs);
        saver.save(large);
        saver.save(small);
        EXPECT_TRUE(waitUntil([this] { return reasons.size() == 2; }));
        return reasons[path(u"small.png"_qs)];
    }

    std::map<QString, QString> reasons;
};

} // namespace

TEST_F(PPictureSaverTest, saves_pictures_in_their_colours_and_makes_the_folder) {
    PPictureSaver saver;
    follow(saver);
    saver.save(jobFor(u"new/a.png"_qs));
    saver.save(jobFor(u"new/b.tif"_qs));
    ASSERT_TRUE(waitUntil([this] { return reasons.size() == 2; }));
    for (const auto& [file, reason] : reasons) {
        EXPECT_EQ(reason, QString());
        EXPECT_EQ(QImage(file).pixelColor(32, 19), QColor(32, 200, 3));
    }
}

TEST_F(PPictureSaverTest, another_thread_waits_for_its_files_if_the_gui_thread_hangs) {
    PPictureSaver saver;
    std::vector<PPictureSaver::Job> jobs; // all first: making one takes longer than saving it
    for (int i = 0; i < 50; ++i)
        jobs.push_back(jobFor(u"new/%1.tif"_qs.arg(i)));
    for (const PPictureSaver::Job& job : jobs)
        saver.save(job);
    std::thread other(PFilesInProgress::completeAll);
    other.join();
    EXPECT_EQ(QDir(path(u"new"_qs)).entryList({u"*.tif"_qs}).size(), qsizetype(jobs.size()));
}

TEST_F(PPictureSaverTest, leaves_an_older_file_alone_and_says_so) {
    writeFile(path(u"a.png"_qs), "mine");
    PPictureSaver saver;
    follow(saver);
    saver.save(jobFor(u"a.png"_qs));
    ASSERT_TRUE(waitUntil([this] { return reasons.size() == 1; }));
    EXPECT_TRUE(reasons.begin()->second.contains(u"a.png"_qs))
        << reasons.begin()->second.toStdString();
    EXPECT_EQ(readFile(path(u"a.png"_qs)), QByteArray("mine"));
}

TEST_F(PPictureSaverTest, saves_what_waits_before_it_is_destroyed) {
    {
        PPictureSaver saver;
        for (int i = 0; i < 5; ++i)
            saver.save(jobFor(u"%1.png"_qs.arg(i)));
    }
    for (int i = 0; i < 5; ++i)
        EXPECT_FALSE(QImage(path(u"%1.png"_qs.arg(i))).isNull()) << i;
}

TEST_F(PPictureSaverTest, when_destroyed_it_logs_what_was_not_saved_and_emits_nothing) {
    writeFile(path(u"a.png"_qs), "mine");
    const PLogCapture log;
    {
        PPictureSaver saver;
        follow(saver);
        saver.save(jobFor(u"a.png"_qs));
    }
    const QStringList texts = log.texts();
    EXPECT_EQ(texts.filter(u"a.png"_qs).size(), 1) << texts.join(u'\n').toStdString();
    EXPECT_TRUE(reasons.empty());
}

TEST_F(PPictureSaverTest, a_picture_that_finds_no_room_is_not_saved_but_named) {
    const QString reason = reasonWithoutRoom();
    EXPECT_EQ(reasons[path(u"large.png"_qs)], QString());
    EXPECT_TRUE(reason.contains(u"3.6 MB"_qs)) << reason.toStdString();
    EXPECT_FALSE(QFile::exists(path(u"small.png"_qs)));

    PPictureSaver saver(1);
    follow(saver);
    saver.save(jobFor(u"small.png"_qs));
    ASSERT_TRUE(waitUntil([this] { return reasons[path(u"small.png"_qs)].isEmpty(); }));
    EXPECT_TRUE(QFile::exists(path(u"small.png"_qs)));
}

TEST_F(PPictureSaverTest, writes_numbers_as_the_language_does) {
    const QScopeGuard restore([locale = QLocale()] { QLocale::setDefault(locale); });
    QLocale::setDefault(QLocale(u"ru"_qs));
    const QString reason = reasonWithoutRoom();
    EXPECT_TRUE(reason.contains(u"3,6 MB"_qs)) << reason.toStdString();
}

TEST_F(PPictureSaverTest, counts_the_pictures_that_are_still_to_be_saved) {
    PPictureSaver saver;
    QList<int> counts;
    QObject::connect(&saver, &PPictureSaver::unsavedChanged, &saver,
                     [&](int pictures) { counts.append(pictures); });
    writeFile(path(u"b.png"_qs), "mine"); // so that this one fails
    for (const QString& name : {u"a.png"_qs, u"b.png"_qs, u"c.png"_qs})
        saver.save(jobFor(name));
    EXPECT_EQ(saver.unsaved(), 3); // results come from the event loop only
    ASSERT_TRUE(waitUntil([&] { return saver.unsaved() == 0; }));
    EXPECT_EQ(counts, (QList<int>{1, 2, 3, 2, 1, 0}));
}
