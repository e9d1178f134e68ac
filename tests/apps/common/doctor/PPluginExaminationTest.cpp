// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PPluginExamination.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QFileInfo>
#include <QLibraryInfo>

namespace {

using Severity = PFinding::Severity;

const QString labPlugin = QStringLiteral(LAB_PLUGIN);

QString minorVersion() {
    const QVersionNumber version = QLibraryInfo::version();
    return u"%1.%2"_qs.arg(QString::number(version.majorVersion()),
                           QString::number(version.minorVersion()));
}

class PPluginExaminationTest : public FolderTest {};

TEST_F(PPluginExaminationTest, qt_and_the_mark_of_a_loaded_plugin_are_shown) {
    const QList<PFinding> findings = PPluginExamination({labPlugin}, {}).run();
    ASSERT_EQ(findings.size(), 2);
    EXPECT_EQ(PFinding::findWorst(findings), Severity::Ok);
    EXPECT_EQ(findings.first().topic, u"qt"_qs);
    EXPECT_TRUE(findings.first().found.contains(QLibraryInfo::version().toString()));
    EXPECT_EQ(findings.last().examined, labPlugin);
    EXPECT_TRUE(findings.last().found.startsWith(
        u"loaded; built for Qt %1, processor level "_qs.arg(minorVersion())))
        << findings.last().found.toStdString();
}

TEST_F(PPluginExaminationTest, a_refused_plugin_is_a_warning_with_the_reason) {
    writeFile(path(u"text.so"_qs), "no plugin");
    const QList<PFinding> findings =
        PPluginExamination({labPlugin}, {{path(u"text.so"_qs), u"it is no plugin"_qs}}).run();
    ASSERT_EQ(findings.size(), 3);
    EXPECT_EQ(findings.last().severity, Severity::Warning);
    EXPECT_EQ(findings.last().found, u"not loaded: it is no plugin"_qs);
    EXPECT_TRUE(findings.last().fix.startsWith(u"Install the plugin again"_qs));
}

TEST_F(PPluginExaminationTest, a_path_without_a_file_has_to_be_corrected) {
    const QList<PFinding> findings =
        PPluginExamination({labPlugin}, {{path(u"none.so"_qs), u"no such file or folder"_qs}})
            .run();
    ASSERT_EQ(findings.size(), 3);
    EXPECT_TRUE(findings.last().fix.startsWith(u"Correct the path in --plugin-path"_qs))
        << findings.last().fix.toStdString();
}

TEST_F(PPluginExaminationTest, a_plugin_for_a_later_qt_is_recognised_by_its_mark) {
    QByteArray library = readFile(labPlugin);
    // The mark follows the owner of the note: its format, then major and minor version of Qt.
    const qsizetype owner = library.indexOf(QByteArray("qt-project!\0", 12));
    ASSERT_GE(owner, 0);
    library[owner + 14] = 99;
    writeFile(path(u"later.so"_qs), library);
    const QList<PFinding> findings =
        PPluginExamination({labPlugin}, {{path(u"later.so"_qs), u"incompatible"_qs}}).run();
    ASSERT_EQ(findings.size(), 3);
    EXPECT_TRUE(findings.last().found.startsWith(
        u"not loaded: incompatible; it was built for Qt 6.99, "_qs))
        << findings.last().found.toStdString();
    EXPECT_EQ(
        findings.last().fix,
        u"Install the version of this plugin that was built for Qt %1."_qs.arg(minorVersion()));
}

TEST_F(PPluginExaminationTest, no_plugin_at_all_is_an_error) {
    const QList<PFinding> findings = PPluginExamination({}, {}).run();
    ASSERT_EQ(findings.size(), 2);
    EXPECT_EQ(findings.last().severity, Severity::Error);
    EXPECT_FALSE(findings.last().fix.isEmpty());
}

} // namespace
