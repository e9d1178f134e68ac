// SPDX-License-Identifier: MIT
#include <support/FolderTest.h>
#include <support/RowFixtures.h>
#include <support/RowTest.h>

#include <QProcess>
#include <QRegularExpression>

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

namespace {

struct NumberRow {
    std::string name;
    int number;
    int square;
};

/// Reads its row wherever a test can.
class RowTestTest : public RowTest<NumberRow> {
protected:
    ~RowTestTest() override { EXPECT_EQ(number, GetParam().number); }
    void SetUp() override { ASSERT_EQ(number, GetParam().number); }

    const int number = GetParam().number;
};

constexpr int firstLine = __LINE__ + 1;
ROW_TEST(RowTestTest, that_comes_before_its_rows_has_them) {
    EXPECT_EQ(number * number, GetParam().square);
}

ROWS(Few, RowTestTest, NumberRow{"zero", 0, 0}, NumberRow{"two", 2, 4});

std::vector<NumberRow> makeRows() {
    std::vector<NumberRow> rows;
    for (int number = 1; number < 4; ++number)
        rows.push_back({"number_" + std::to_string(number), number, number * number});
    return rows;
}

ROWS_IN(Made, RowTestTest, makeRows());

constexpr int secondLine = __LINE__ + 1;
ROW_TEST(RowTestTest, that_comes_after_its_rows_has_them) {
    EXPECT_EQ(GetParam().square / (number == 0 ? 1 : number), number);
}

/// With rows that have no name.
class RowTestOfNumber : public testing::Test, public WithRow<int> {
public:
    static std::string toRowName(const int& row) { return std::to_string(row) + "_pixels"; }
};

ROW_TEST(RowTestOfNumber, has_the_name_that_its_fixture_makes) {
    EXPECT_EQ("has_the_name_that_its_fixture_makes/" + std::to_string(GetParam()) + "_pixels",
              testing::UnitTest::GetInstance()->current_test_info()->name());
}

constexpr int sizes[] = {8, 16};
ROWS_IN(Sizes, RowTestOfNumber, sizes);

TEST_F(RowTestOfNumber, that_is_no_row_test_has_no_row) {
    EXPECT_THROW(GetParam(), std::logic_error);
}

/// The tests of a suite as GoogleTest knows them.
std::vector<const testing::TestInfo*> findTests(const std::string& suite) {
    std::vector<const testing::TestInfo*> tests;
    const testing::UnitTest& program = *testing::UnitTest::GetInstance();
    for (int i = 0; i < program.total_test_suite_count(); ++i) {
        const testing::TestSuite& found = *program.GetTestSuite(i);
        for (int j = 0; found.name() == suite && j < found.total_test_count(); ++j)
            tests.push_back(found.GetTestInfo(j));
    }
    return tests;
}

std::vector<std::string> findNames(const std::string& suite) {
    std::vector<std::string> names;
    for (const testing::TestInfo* test : findTests(suite))
        names.emplace_back(test->name());
    return names;
}

/// A program of row tests with mistakes, run with some options.
struct MistakenProgram {
    explicit MistakenProgram(const QStringList& options = {}) {
        QProcess process;
        process.start(QStringLiteral(ROW_MISTAKES), options + QStringList{u"--gtest_color=no"_qs});
        if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit)
            throw std::runtime_error("the program did not end");
        code = process.exitCode();
        output = QString::fromUtf8(process.readAllStandardOutput());
    }
    /// What it reports, each after the beginning of the line that it names.
    std::vector<std::string> mistakes() const;

    int code = 0;
    QString output;
};

std::vector<std::string> MistakenProgram::mistakes() const {
    static const QRegularExpression failure(u"(\\w+\\.cpp):(\\d+): Failure\\nFailed\\n(.*)"_qs);
    std::vector<std::string> found;
    for (auto match = failure.globalMatch(output); match.hasNext();) {
        const QRegularExpressionMatch one = match.next();
        const QString file = QStringLiteral(SUPPORT_FOLDER) + u'/' + one.captured(1);
        const QByteArray line = readFile(file).split('\n').value(one.captured(2).toInt() - 1);
        found.push_back(line.left(line.indexOf(',')).toStdString() + ": " +
                        one.captured(3).toStdString());
    }
    return found;
}

} // namespace

ROW_TEST(RowsElsewhere, has_its_row) {
    EXPECT_STREQ(GetParam().word, GetParam().name);
}

ROWS(Rows, TestsElsewhere, WordRow{"one", "one"}, WordRow{"two", "two"});

TEST(RowTests, run_for_each_row_of_each_table_of_their_suite) {
    EXPECT_THAT(findNames("Few/RowTestTest"),
                ElementsAre("that_comes_before_its_rows_has_them/zero",
                            "that_comes_before_its_rows_has_them/two",
                            "that_comes_after_its_rows_has_them/zero",
                            "that_comes_after_its_rows_has_them/two"));
    EXPECT_THAT(findNames("Made/RowTestTest"),
                ElementsAre("that_comes_before_its_rows_has_them/number_1",
                            "that_comes_before_its_rows_has_them/number_2",
                            "that_comes_before_its_rows_has_them/number_3",
                            "that_comes_after_its_rows_has_them/number_1",
                            "that_comes_after_its_rows_has_them/number_2",
                            "that_comes_after_its_rows_has_them/number_3"));
}

TEST(RowTests, are_where_they_are_written) {
    const std::vector<const testing::TestInfo*> tests = findTests("Few/RowTestTest");
    ASSERT_EQ(tests.size(), 4U);
    EXPECT_STREQ(tests[0]->file(), __FILE__);
    EXPECT_EQ(tests[0]->line(), firstLine);
    EXPECT_EQ(tests[1]->line(), firstLine);
    EXPECT_EQ(tests[2]->line(), secondLine);
}

TEST(RowTests, may_be_in_another_source_than_their_rows) {
    EXPECT_THAT(findNames("Rows/RowsElsewhere"), ElementsAre("has_its_row/one", "has_its_row/two"));
    EXPECT_THAT(findNames("Rows/TestsElsewhere"),
                ElementsAre("has_its_row/one", "has_its_row/two"));
}

TEST(RowTests, with_mistakes_fail_the_program) {
    const MistakenProgram program;
    EXPECT_EQ(program.code, 1);
    EXPECT_THAT(
        program.mistakes(),
        UnorderedElementsAre(
            "ROWS(Rows: a row is named \"two words\": expected letters, digits and underscores",
            "ROWS(Rows: a row is named \"\": expected letters, digits and underscores",
            "ROWS(Rows: two rows are named again: expected another name",
            "ROWS(Twice: two tables of RowsElsewhere have the prefix Twice: expected different "
            "ones",
            "ROWS_IN(Rows: a table of EmptyTable is empty: expected at least one row",
            "ROW_TEST(WithoutRows: no ROWS for WithoutRows: none of its tests would run",
            "ROWS(Rows: no ROW_TEST of WithoutTests: no test would use these rows",
            "ROW_TEST(SameName: the suite SameName has another fixture in another source: "
            "expected different names"));
}

TEST(RowTests, with_mistakes_fail_the_program_even_if_it_runs_only_others_or_none) {
    EXPECT_EQ(MistakenProgram({u"--gtest_filter=Rows/GoodRows*good"_qs}).code, 1);
    const MistakenProgram none({u"--gtest_filter=nothing"_qs});
    EXPECT_EQ(none.code, 1);
    EXPECT_EQ(none.mistakes().size(), 8U);
}

TEST(RowTests, fail_by_themselves_for_the_row_that_is_wrong) {
    const MistakenProgram program;
    EXPECT_THAT(program.output.toStdString(), HasSubstr("[       OK ] Rows/GoodRows.is_good/good"));
    EXPECT_THAT(program.output.toStdString(), HasSubstr("[  FAILED  ] Rows/GoodRows.is_good/bad"));
}
