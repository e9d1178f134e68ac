// SPDX-License-Identifier: MIT
#include <toupcam/SimTestSupport.h>

namespace {

using Put = HRESULT (*)(HToupcam, int);
using Get = HRESULT (*)(HToupcam, int*);

struct ScalarRow {
    const char* name;
    Put put;
    Get get;
    int minimum;
    int maximum;
    int initial;
    bool needsColour;
};

const ScalarRow scalars[] = {
    {"hue", Toupcam_put_Hue, Toupcam_get_Hue, -180, 180, 0, true},
    {"saturation", Toupcam_put_Saturation, Toupcam_get_Saturation, 0, 255, 128, true},
    {"brightness", Toupcam_put_Brightness, Toupcam_get_Brightness, -64, 64, 0, false},
    {"contrast", Toupcam_put_Contrast, Toupcam_get_Contrast, -100, 100, 0, false},
    {"gamma", Toupcam_put_Gamma, Toupcam_get_Gamma, 20, 180, 100, false},
    {"light frequency", Toupcam_put_HZ, Toupcam_get_HZ, 0, 2, 2, false},
};

class SimScalar : public SimTest, public WithSimRow<ScalarRow> {
protected:
    int read(HToupcam handle) {
        int value = -9999;
        EXPECT_EQ(GetParam().get(handle, &value), S_OK);
        return value;
    }
};

ROWS_IN(rows, SimScalar, scalars);

ROW_TEST(SimScalar, starts_neutral_and_takes_its_whole_range) {
    const HToupcam handle = open("sim-20mc-1");
    EXPECT_EQ(read(handle), GetParam().initial);
    for (const int value : {GetParam().minimum, GetParam().maximum}) {
        EXPECT_EQ(GetParam().put(handle, value), S_OK);
        EXPECT_EQ(read(handle), value);
    }
}

ROW_TEST(SimScalar, value_out_of_range_is_refused_and_changes_nothing) {
    const HToupcam handle = open("sim-20mc-1");
    EXPECT_EQ(GetParam().put(handle, GetParam().minimum - 1), E_INVALIDARG);
    EXPECT_EQ(GetParam().put(handle, GetParam().maximum + 1), E_INVALIDARG);
    EXPECT_EQ(read(handle), GetParam().initial);
}

ROW_TEST(SimScalar, next_session_starts_neutral_again) {
    const HToupcam first = open("sim-20mc-1");
    EXPECT_EQ(GetParam().put(first, GetParam().minimum), S_OK);
    Toupcam_Close(first);
    EXPECT_EQ(read(open("sim-20mc-1")), GetParam().initial);
}

ROW_TEST(SimScalar, grey_camera_has_it_unless_it_is_about_colour) {
    const HToupcam handle = open("sim-1mm-1");
    const HRESULT expected = GetParam().needsColour ? E_NOTIMPL : S_OK;
    int value = 0;
    EXPECT_EQ(GetParam().put(handle, GetParam().maximum), expected);
    EXPECT_EQ(GetParam().get(handle, &value), expected);
}

ROW_TEST(SimScalar, null_output_is_refused) {
    EXPECT_EQ(GetParam().get(open("sim-20mc-1"), nullptr), E_POINTER);
}

struct SwitchRow {
    const char* name;
    Put put;
    Get get;
    bool needsColour;
};

const SwitchRow switches[] = {
    {"negative", Toupcam_put_Negative, Toupcam_get_Negative, false},
    {"chrome", Toupcam_put_Chrome, Toupcam_get_Chrome, true},
    {"vertical flip", Toupcam_put_VFlip, Toupcam_get_VFlip, false},
    {"horizontal flip", Toupcam_put_HFlip, Toupcam_get_HFlip, false},
};

class SimSwitch : public SimTest, public WithSimRow<SwitchRow> {};

ROWS_IN(rows, SimSwitch, switches);

ROW_TEST(SimSwitch, is_off_at_first_and_on_with_any_value_but_0) {
    const HToupcam handle = open("sim-20mc-1");
    int value = -1;
    EXPECT_EQ(GetParam().get(handle, &value), S_OK);
    EXPECT_EQ(value, 0);
    for (const int on : {1, 0, -5}) {
        EXPECT_EQ(GetParam().put(handle, on), S_OK);
        EXPECT_EQ(GetParam().get(handle, &value), S_OK);
        EXPECT_EQ(value, on == 0 ? 0 : 1);
    }
}

ROW_TEST(SimSwitch, grey_camera_has_it_unless_it_is_about_colour) {
    const HToupcam handle = open("sim-1mm-1");
    const HRESULT expected = GetParam().needsColour ? E_NOTIMPL : S_OK;
    int value = 0;
    EXPECT_EQ(GetParam().put(handle, 1), expected);
    EXPECT_EQ(GetParam().get(handle, &value), expected);
}

ROW_TEST(SimSwitch, null_output_is_refused) {
    EXPECT_EQ(GetParam().get(open("sim-20mc-1"), nullptr), E_POINTER);
}

} // namespace
