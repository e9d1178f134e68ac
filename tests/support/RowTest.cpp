// SPDX-License-Identifier: MIT
#include <support/RowTest.h>

#include <algorithm>
#include <deque>
#include <set>
#include <stdexcept>
#include <vector>

namespace {

using Place = RowRegistry::Place;

struct NamedRow {
    std::string name;
    const void* row;
};

struct TestOfRows {
    std::string name;
    testing::Test* (*make)();
    Place place;
};

struct TableOfRows {
    std::string prefix;
    std::vector<NamedRow> rows;
    Place place;
};

struct SuiteOfRows {
    const std::type_info* fixture;
    std::string name;
    std::vector<TestOfRows> tests;
    std::vector<TableOfRows> tables;
};

struct RowMistake {
    Place place;
    std::string text;
};

/// The row of the running test; null if it has none.
const void* rowOfTest = nullptr;

/// Makes a test with its row, which the fixture's constructor may already read.
struct RowTestMaker {
    testing::Test* operator()() const {
        rowOfTest = row;
        return make();
    }

    testing::Test* (*make)();
    const void* row;
};

class KnownRows {
public:
    static KnownRows& instance();

    void addTest(SuiteOfRows& suite, const TestOfRows& test);
    void addTable(SuiteOfRows& suite, const TableOfRows& table);
    SuiteOfRows& findSuite(const std::type_info& fixture, const char* name, const Place& place);
    std::vector<NamedRow> nameRows(const RowRegistry::Table& table, const Place& place);
    /// All mistakes, once all tests and rows are known.
    std::vector<RowMistake> findMistakes() const;

private:
    KnownRows();
    static void registerTest(const SuiteOfRows& suite, const TestOfRows& test,
                             const TableOfRows& table);

    std::deque<SuiteOfRows> m_suites;
    std::vector<RowMistake> m_mistakes;
};

/// Reports mistakes as failures of the program, and takes the row from a test that has ended.
class RowListener : public testing::EmptyTestEventListener {
    // Before the tests: a failure outside of them counts even if none of them runs.
    void OnTestProgramStart(const testing::UnitTest& /*program*/) override {
        for (const RowMistake& mistake : KnownRows::instance().findMistakes())
            ADD_FAILURE_AT(mistake.place.file, mistake.place.line) << mistake.text;
    }
    // Otherwise the next test of another kind could read it.
    void OnTestEnd(const testing::TestInfo& /*test*/) override { rowOfTest = nullptr; }
};

KnownRows& KnownRows::instance() {
    static KnownRows known; // in time for whichever source comes first
    return known;
}

KnownRows::KnownRows() {
    testing::UnitTest::GetInstance()->listeners().Append(new RowListener);
}

SuiteOfRows& KnownRows::findSuite(const std::type_info& fixture, const char* name,
                                  const Place& place) {
    // By address: two fixtures in unnamed namespaces may be equal by name.
    for (SuiteOfRows& suite : m_suites) {
        if (suite.fixture == &fixture)
            return suite;
    }
    if (std::any_of(m_suites.begin(), m_suites.end(),
                    [&](const SuiteOfRows& suite) { return suite.name == name; })) {
        m_mistakes.push_back({place, "the suite " + std::string(name) +
                                         " has another fixture in another source: expected "
                                         "different names"});
    }
    return m_suites.emplace_back(SuiteOfRows{&fixture, name, {}, {}});
}

bool isRowName(const std::string& name) {
    return !name.empty() &&
           name.find_first_not_of("abcdefghijklmnopqrstuvwxyz_ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                  "0123456789") == std::string::npos;
}

std::vector<NamedRow> KnownRows::nameRows(const RowRegistry::Table& table, const Place& place) {
    std::vector<NamedRow> rows;
    std::set<std::string> names;
    for (std::size_t i = 0; i < table.count; ++i) {
        const void* const row = static_cast<const char*>(table.rows) + i * table.size;
        const std::string name = table.toName(row);
        if (!isRowName(name))
            m_mistakes.push_back({place, "a row is named \"" + name +
                                             "\": expected letters, digits and underscores"});
        else if (!names.insert(name).second)
            m_mistakes.push_back({place, "two rows are named " + name + ": expected another name"});
        else
            rows.push_back({name, row});
    }
    return rows;
}

void KnownRows::registerTest(const SuiteOfRows& suite, const TestOfRows& test,
                             const TableOfRows& table) {
    const std::string suiteName = table.prefix + '/' + suite.name;
    for (const auto& [name, row] : table.rows) {
        testing::RegisterTest(suiteName.c_str(), (test.name + '/' + name).c_str(), nullptr, nullptr,
                              test.place.file, test.place.line, RowTestMaker{test.make, row});
    }
}

void KnownRows::addTest(SuiteOfRows& suite, const TestOfRows& test) {
    suite.tests.push_back(test);
    for (const TableOfRows& table : suite.tables)
        registerTest(suite, test, table);
}

void KnownRows::addTable(SuiteOfRows& suite, const TableOfRows& table) {
    if (std::any_of(suite.tables.begin(), suite.tables.end(),
                    [&](const TableOfRows& other) { return other.prefix == table.prefix; })) {
        m_mistakes.push_back({table.place, "two tables of " + suite.name + " have the prefix " +
                                               table.prefix + ": expected different ones"});
        return;
    }
    suite.tables.push_back(table);
    for (const TestOfRows& test : suite.tests)
        registerTest(suite, test, table);
}

std::vector<RowMistake> KnownRows::findMistakes() const {
    std::vector<RowMistake> mistakes = m_mistakes;
    for (const SuiteOfRows& suite : m_suites) {
        if (suite.tables.empty())
            mistakes.push_back({suite.tests.front().place,
                                "no ROWS for " + suite.name + ": none of its tests would run"});
        for (const TableOfRows& table : suite.tables) {
            if (suite.tests.empty())
                mistakes.push_back({table.place, "no ROW_TEST of " + suite.name +
                                                     ": no test would use these rows"});
            if (table.rows.empty())
                mistakes.push_back({table.place, "a table of " + suite.name +
                                                     " is empty: expected at least one row"});
        }
    }
    return mistakes;
}

} // namespace

bool RowRegistry::addTest(const std::type_info& fixture, const char* suite, const char* test,
                          testing::Test* (*make)(), const Place& place) {
    KnownRows& known = KnownRows::instance();
    known.addTest(known.findSuite(fixture, suite, place), {test, make, place});
    return true;
}

bool RowRegistry::addRows(const std::type_info& fixture, const char* suite, const Table& table,
                          const Place& place) {
    KnownRows& known = KnownRows::instance();
    known.addTable(known.findSuite(fixture, suite, place),
                   {table.prefix, known.nameRows(table, place), place});
    return true;
}

const void* RowRegistry::currentRow() {
    if (rowOfTest == nullptr)
        throw std::logic_error("GetParam() in a test without a row: expected a ROW_TEST");
    return rowOfTest;
}
