// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <string>

/// Names a parametrised test after the `name` of its row.
struct RowName {
    template <typename Row>
    std::string operator()(const testing::TestParamInfo<Row>& row) const {
        return row.param.name;
    }
};
