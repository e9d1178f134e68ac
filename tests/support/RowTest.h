// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <string>
#include <typeinfo>

// Tests that run once for each row of a table. They do what GoogleTest's TEST_P does, and are named
// the same, "Prefix/Suite.test/row", but take a tenth of the time to compile: only what must know
// the type of a row is made for each suite. A source has
//
//     struct LengthRow {
//         const char* name;
//         const char* text;
//         int length;
//     };
//
//     class Length : public RowTest<LengthRow> {};
//
//     ROW_TEST(Length, is_that_of_the_text) {
//         EXPECT_EQ(measure(GetParam().text), GetParam().length);
//     }
//
//     ROWS(Rows, Length, LengthRow{"of_nothing", "", 0}, LengthRow{"of_a_word", "word", 4});
//
// The rows are made before main() begins. A row's name has letters, digits and underscores, and no
// other row of the table has it. A program with such a mistake, or with rows that lack tests or
// tests that lack rows, fails, whichever of its tests run.

/// Which rows and tests belong together. On the thread of the tests, like all of GoogleTest.
class RowRegistry {
public:
    struct Place {
        const char* file;
        int line;
    };
    /// Rows in memory that stays, each of `size` bytes.
    struct Table {
        const char* prefix;
        const void* rows;
        std::size_t count;
        std::size_t size;
        std::string (*toName)(const void* row);
    };

    /// Registers a test with each row of its fixture, now and whenever rows are added; always true.
    static bool addTest(const std::type_info& fixture, const char* suite, const char* test,
                        testing::Test* (*make)(), const Place& place);
    /// Registers the rows of a fixture with each test, now and whenever one is added; always true.
    static bool addRows(const std::type_info& fixture, const char* suite, const Table& table,
                        const Place& place);
    /// The row of the running test. Throws std::logic_error if that has none.
    static const void* currentRow();
};

/// What a fixture derives from, besides another fixture, to have a row of a table.
template <typename Row>
class WithRow {
public:
    using RowType = Row;

    /// The row of the running test, in the fixture's constructor too.
    static const Row& GetParam() { return *static_cast<const Row*>(RowRegistry::currentRow()); }
    /// A row's part of the test's name. A fixture whose rows have no `name` has its own function.
    static std::string toRowName(const Row& row) { return row.name; }
};

/// A fixture that has a row of a table, and nothing else.
template <typename Row>
class RowTest : public testing::Test, public WithRow<Row> {};

/// A test that runs for each row of its suite: write it like a TEST_F.
#define ROW_TEST(suite, test)                                                                      \
    namespace {                                                                                    \
    class suite##_##test##_Test : public suite {                                                   \
        static_assert(&suite::SetUpTestSuite == &testing::Test::SetUpTestSuite &&                  \
                          &suite::TearDownTestSuite == &testing::Test::TearDownTestSuite,          \
                      "the functions for a whole suite would not be called");                      \
        void TestBody() override;                                                                  \
                                                                                                   \
    public:                                                                                        \
        static testing::Test* make() { return new suite##_##test##_Test; }                         \
    };                                                                                             \
    [[maybe_unused]] const bool suite##_##test##_isKnown = RowRegistry::addTest(                   \
        typeid(suite), #suite, #test, &suite##_##test##_Test::make, {__FILE__, __LINE__});         \
    }                                                                                              \
    void suite##_##test##_Test::TestBody()

/// Rows of a suite: ROWS(Prefix, Suite, LengthRow{…}, LengthRow{…});
#define ROWS(prefix, suite, ...)                                                                   \
    static const suite::RowType rows_##prefix##_##suite[] = {__VA_ARGS__};                         \
    PRIVATE_ADD_ROWS(prefix, suite)

/// The rows of a suite that are in an array, or in a container that has them in one piece.
#define ROWS_IN(prefix, suite, ...)                                                                \
    static const auto& rows_##prefix##_##suite = __VA_ARGS__;                                      \
    PRIVATE_ADD_ROWS(prefix, suite)

#define PRIVATE_ADD_ROWS(prefix, suite)                                                            \
    static std::string toName_##prefix##_##suite(const void* row) {                                \
        return suite::toRowName(*static_cast<const suite::RowType*>(row));                         \
    }                                                                                              \
    [[maybe_unused]] static const bool isKnown_##prefix##_##suite = RowRegistry::addRows(          \
        typeid(suite), #suite,                                                                     \
        {#prefix, static_cast<const suite::RowType*>(std::data(rows_##prefix##_##suite)),          \
         std::size(rows_##prefix##_##suite), sizeof(suite::RowType), &toName_##prefix##_##suite},  \
        {__FILE__, __LINE__})
