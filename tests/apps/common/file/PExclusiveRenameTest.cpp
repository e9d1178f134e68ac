// SPDX-License-Identifier: MIT
#include <apps/common/file/PExclusiveRename.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QDir>
#include <QFile>

#include <cerrno>

namespace {

/// Steps as on file systems that lack some calls, which a test cannot provide.
template <int Error>
int refuse(const QByteArray&, const QByteArray&) {
    return Error;
}

class ExclusiveRename : public FolderTest {
protected:
    const QString part = path(u"a.part"_qs);
    const QString file = path(u"a.png"_qs);

    void SetUp() override { writeFile(part, "new"); }
    QStringList names() const {
        return QDir(path(QString())).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }
    /// The file must have its new name, and no other.
    void expectNamed() const {
        EXPECT_EQ(names(), QStringList(u"a.png"_qs));
        EXPECT_EQ(readFile(file), QByteArray("new"));
    }
};

struct StepRow {
    const char* name;
    std::vector<PExclusiveRename::Step> steps;
};

TEST_F(ExclusiveRename, gives_a_folder_its_name_in_each_way_and_replaces_nothing) {
    for (const PExclusiveRename::Step step : PExclusiveRename::folderSteps()) {
        ASSERT_TRUE(QDir().mkpath(path(u"f.part/inside"_qs)));
        const QByteArray from = QFile::encodeName(path(u"f.part"_qs));
        const QByteArray to = QFile::encodeName(path(u"f"_qs));
        ASSERT_EQ(step(from, to), 0);
        EXPECT_TRUE(QDir(path(u"f/inside"_qs)).exists());
        ASSERT_TRUE(QDir().mkpath(path(u"f.part"_qs)));
        EXPECT_EQ(step(from, to), EEXIST);
        EXPECT_TRUE(QDir(path(u"f/inside"_qs)).exists());
        ASSERT_TRUE(QDir(path(u"f"_qs)).removeRecursively());
        ASSERT_TRUE(QDir().mkpath(path(u"f"_qs))); // an empty one is not replaced either
        EXPECT_EQ(step(from, to), EEXIST);
        EXPECT_EQ(step(QFile::encodeName(path(u"none"_qs)), to + "2"), ENOENT);
        EXPECT_FALSE(QFile::exists(path(u"f2"_qs)));
        ASSERT_TRUE(QDir(path(u"f"_qs)).removeRecursively());
    }
}

class RenameStep : public ExclusiveRename, public WithRow<StepRow> {};

ROW_TEST(RenameStep, gives_the_file_its_name) {
    EXPECT_EQ(PExclusiveRename::name(part, file, GetParam().steps), 0);
    expectNamed();
}

ROW_TEST(RenameStep, leaves_a_file_that_is_there_alone) {
    writeFile(file, "old");
    EXPECT_EQ(PExclusiveRename::name(part, file, GetParam().steps), EEXIST);
    EXPECT_EQ(readFile(file), QByteArray("old"));
    EXPECT_EQ(readFile(part), QByteArray("new"));
}

ROW_TEST(RenameStep, leaves_a_link_that_leads_nowhere_alone) {
    ASSERT_TRUE(QFile::link(path(u"none"_qs), file));
    EXPECT_EQ(PExclusiveRename::name(part, file, GetParam().steps), EEXIST);
    EXPECT_EQ(QFile::symLinkTarget(file), path(u"none"_qs));
    EXPECT_FALSE(QFile::exists(path(u"none"_qs)));
    EXPECT_EQ(readFile(part), QByteArray("new"));
}

ROW_TEST(RenameStep, leaves_a_folder_alone) {
    ASSERT_TRUE(QDir().mkdir(file));
    EXPECT_EQ(PExclusiveRename::name(part, file, GetParam().steps), EEXIST);
    EXPECT_TRUE(QDir(file).exists());
    EXPECT_EQ(readFile(part), QByteArray("new"));
}

ROW_TEST(RenameStep, leaves_nothing_of_a_file_that_is_not_there) {
    ASSERT_TRUE(QFile::remove(part));
    EXPECT_EQ(PExclusiveRename::name(part, file, GetParam().steps), ENOENT);
    EXPECT_EQ(names(), QStringList());
}

ROWS(Rows, RenameStep, StepRow{"of_a_rename", {PExclusiveRename::byRename}},
     StepRow{"of_a_link", {PExclusiveRename::byLink}},
     StepRow{"of_a_placeholder", {PExclusiveRename::byPlaceholder}},
     StepRow{"that_this_file_system_has", PExclusiveRename::allSteps()},
     StepRow{"of_a_link_where_a_rename_is_refused_by_its_flags",
             {refuse<EINVAL>, PExclusiveRename::byLink}},
     StepRow{"of_a_link_where_such_a_rename_is_unknown",
             {refuse<ENOSYS>, PExclusiveRename::byLink}},
     StepRow{"of_a_placeholder_where_links_are_not_permitted",
             {refuse<ENOTSUP>, refuse<EPERM>, PExclusiveRename::byPlaceholder}},
     StepRow{"of_a_placeholder_where_links_are_not_supported",
             {refuse<EINVAL>, refuse<EOPNOTSUPP>, PExclusiveRename::byPlaceholder}},
     StepRow{"of_a_placeholder_where_links_are_unknown",
             {refuse<ENOSYS>, refuse<ENOSYS>, PExclusiveRename::byPlaceholder}});

TEST_F(ExclusiveRename, a_step_that_failed_for_another_reason_is_the_last) {
    EXPECT_EQ(PExclusiveRename::name(part, file, {refuse<ENOSPC>, PExclusiveRename::byLink}),
              ENOSPC);
    EXPECT_EQ(names(), QStringList(u"a.part"_qs));
}

TEST_F(ExclusiveRename, the_reason_is_that_of_the_last_step_where_none_is_supported) {
    EXPECT_EQ(PExclusiveRename::name(part, file, {refuse<EINVAL>, refuse<EPERM>}), EPERM);
    EXPECT_EQ(names(), QStringList(u"a.part"_qs));
}

TEST_F(ExclusiveRename, the_steps_it_takes_end_with_one_that_any_file_system_has) {
    EXPECT_EQ(
        PExclusiveRename::allSteps(),
        (std::vector<PExclusiveRename::Step>{PExclusiveRename::byRename, PExclusiveRename::byLink,
                                             PExclusiveRename::byPlaceholder}));
}

} // namespace
