// SPDX-License-Identifier: MIT
#pragma once

#include <support/RowTest.h>

struct WordRow {
    const char* name;
    const char* word;
};

/// Suites of which one source has the rows and another one the tests: one is initialised first.
class RowsElsewhere : public RowTest<WordRow> {};
class TestsElsewhere : public RowTest<WordRow> {};
