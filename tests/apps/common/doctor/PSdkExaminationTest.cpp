// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PSdkExamination.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QSet>

#include <gtest/gtest.h>

namespace {

using Severity = PFinding::Severity;

/// The libraries are loaded into this process, which the variable then names.
class PSdkExaminationTest : public testing::Test {
protected:
    ~PSdkExaminationTest() override {
        if (m_before.isNull())
            qunsetenv("TOUPCAM_LIBRARY");
        else
            qputenv("TOUPCAM_LIBRARY", m_before);
    }

    QList<PFinding> examine(const QString& library, const QStringList& functions) {
        const PStatus loaded = sdk.load(library);
        return PSdkExamination(sdk, loaded, functions).run();
    }

    PCameraSdk sdk;

private:
    const QByteArray m_before = qgetenv("TOUPCAM_LIBRARY");
};

TEST_F(PSdkExaminationTest, a_library_that_has_everything_is_well) {
    const QList<PFinding> findings =
        examine(QStringLiteral(EMPTY_CAMERA_SDK), {u"Toupcam_EnumV2"_qs, u"Toupcam_HotPlug"_qs});
    ASSERT_EQ(findings.size(), 2);
    EXPECT_EQ(PFinding::findWorst(findings), Severity::Ok);
    EXPECT_EQ(findings.first().examined, QStringLiteral(EMPTY_CAMERA_SDK));
    EXPECT_EQ(findings.first().found, u"named by --sdk, reports no version"_qs);
    EXPECT_EQ(findings.last().found, u"has all 2 functions that the plugin calls"_qs);
}

TEST_F(PSdkExaminationTest, functions_that_a_library_lacks_are_named) {
    const QList<PFinding> findings =
        examine(QStringLiteral(EMPTY_CAMERA_SDK), {u"Toupcam_EnumV2"_qs, u"Toupcam_Open"_qs});
    ASSERT_EQ(findings.size(), 2);
    EXPECT_EQ(findings.last().severity, Severity::Warning);
    EXPECT_EQ(findings.last().found, u"lacks 1 of the 2 functions that the plugin calls, so "
                                     "calls to them fail: Toupcam_Open"_qs);
    EXPECT_FALSE(findings.last().fix.isEmpty());
}

TEST_F(PSdkExaminationTest, of_many_functions_the_first_five_are_named) {
    const QList<PFinding> findings = examine(
        QStringLiteral(EMPTY_CAMERA_SDK), {u"a"_qs, u"b"_qs, u"c"_qs, u"d"_qs, u"e"_qs, u"f"_qs});
    ASSERT_EQ(findings.size(), 2);
    EXPECT_TRUE(findings.last().found.endsWith(u": a, b, c, d, e and 1 more"_qs))
        << findings.last().found.toStdString();
}

TEST_F(PSdkExaminationTest, the_simulated_library_has_all_that_the_plugin_calls_and_is_a_note) {
    const QStringList functions = PSdkExamination::pluginFunctions();
    EXPECT_TRUE(functions.contains(u"Toupcam_StartPushMode"_qs));
    EXPECT_EQ(functions.size(), QSet<QString>(functions.begin(), functions.end()).size());
    const QList<PFinding> findings = examine(u"sim"_qs, functions);
    ASSERT_EQ(findings.size(), 2);
    EXPECT_EQ(findings.first().severity, Severity::Note);
    EXPECT_TRUE(
        findings.first().found.startsWith(u"comes with the program, version simulated "_qs));
    EXPECT_TRUE(findings.first().found.endsWith(u"; the cameras are simulated"_qs));
    EXPECT_EQ(findings.last().severity, Severity::Ok) << findings.last().found.toStdString();
}

TEST_F(PSdkExaminationTest, the_variable_that_names_a_library_is_said) {
    qputenv("TOUPCAM_LIBRARY", EMPTY_CAMERA_SDK);
    const QList<PFinding> findings = examine(u"auto"_qs, {});
    ASSERT_FALSE(findings.isEmpty());
    EXPECT_TRUE(findings.first().found.startsWith(u"named by TOUPCAM_LIBRARY"_qs))
        << findings.first().found.toStdString();
}

TEST_F(PSdkExaminationTest, a_library_that_cannot_be_loaded_is_an_error_with_the_loaders_reason) {
    const QList<PFinding> findings = examine(u"/none/lib.so"_qs, {});
    ASSERT_EQ(findings.size(), 1);
    EXPECT_EQ(findings.first().severity, Severity::Error);
    EXPECT_TRUE(findings.first().found.contains(
        u"/none/lib.so: cannot open shared object file: No such file or directory"_qs))
        << findings.first().found.toStdString();
    EXPECT_TRUE(findings.first().fix.startsWith(u"Give the path"_qs));
}

struct AdviceRow {
    const char* name;
    const char* reason; ///< as the system's loader words it
    const char* advice; ///< its beginning
};

class SdkAdvice : public RowTest<AdviceRow> {};

ROW_TEST(SdkAdvice, fits_the_reason) {
    const QString reason = u"cannot use \"/sdk/lib.so\" as the camera SDK: "_qs +
                           QString::fromLatin1(GetParam().reason);
    const QString advice = PSdkExamination::adviseOnFailure(reason);
    EXPECT_TRUE(advice.startsWith(QString::fromLatin1(GetParam().advice))) << advice.toStdString();
}

ROWS(Rows, SdkAdvice,
     AdviceRow{"a_path_that_is_wrong",
               "/sdk/lib.so: cannot open shared object file: No such file or directory",
               "Give the path of the maker's library"},
     AdviceRow{"another_library_that_is_missing",
               "libusb-9.so: cannot open shared object file: No such file or directory",
               "Install the package with libusb-9.so, which the library needs."},
     AdviceRow{"a_file_that_may_not_be_read",
               "/sdk/lib.so: cannot open shared object file: Permission denied",
               "Make the file readable for this user"},
     AdviceRow{"another_processor", "/sdk/lib.so: wrong ELF class: ELFCLASS32",
               "Use the library built for this computer's processor, "},
     AdviceRow{"a_text_file", "/sdk/lib.so: invalid ELF header", "Copy the library again"},
     AdviceRow{"half_a_file", "/sdk/lib.so: file too short", "Copy the library again"},
     AdviceRow{"an_older_system",
               "/lib/libc.so.6: version `GLIBC_9.99' not found (required by /sdk/lib.so)",
               "Use a version of the library built for this system"},
     AdviceRow{"an_undefined_symbol", "/sdk/lib.so: undefined symbol: f",
               "Use a version of the library built for this system"},
     AdviceRow{"another_library_by_mistake", "it has no function Toupcam_EnumV2",
               "Give the path of the maker's camera library"});

} // namespace
