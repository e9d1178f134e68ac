// SPDX-License-Identifier: MIT
#include <PCore/state/PJsonReader.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

struct HostileDocument {
    const char* name;
    QByteArray json;
    const char* reason; // a part of the message, the line first
};

class PJsonReaderRefuses : public RowTest<HostileDocument> {};

QByteArray nestedObjects(int depth) {
    return QByteArray("{\"a\": ").repeated(depth) + '1' + QByteArray(depth, '}');
}

const HostileDocument hostileDocuments[] = {
    {"an_empty_document", "", "line 1: not JSON"},
    {"blanks_only", " \n\n ", "not JSON"},
    {"a_word", "{\n\"a\": maybe}", "line 2: not JSON"},
    {"a_comma_too_many", "{\n\"a\": 1,\n}", "line 3: not JSON"},
    {"text_after_the_end", "{}\n{}", "line 2: not JSON"},
    {"an_array_as_document", "[1]", "line 1: an array where an object was expected"},
    {"a_bare_number", "1", "line 1: not JSON"},
    {"not_a_number", "{\"a\": NaN}", "line 1: not JSON"},
    {"a_second_byte_order_mark", "\xEF\xBB\xBF\xEF\xBB\xBF{\"a\": 15}",
     "line 1: a second byte order mark"},
    {"infinity", "{\"a\": Infinity}", "line 1: not JSON"},
    {"bytes_that_are_not_utf8", "{\"a\":\n\"\xff\xfe\"}", "line 2: not JSON"},
    {"a_nul_byte_between_values", QByteArray("{\"a\":\n\0 1}", 10), "line 2: not JSON"},
    {"a_nul_byte_in_a_text", QByteArray("{\"a\":\n\"x\0y\"}", 12), "line 2: a control character"},
    {"a_line_break_in_a_text", "{\n\n\"a\": \"x\ny\"}", "line 3: a control character"},
    {"a_line_break_in_a_name", "{\"a\nb\": 1}", "line 1: a control character"},
    {"a_name_twice", "{\n\"a\": 1,\n\"b\": 2,\n\"a\": 3}", "line 4: the name \"a\" twice"},
    {"a_name_twice_in_other_spelling", "{\"a\": 1,\n\"\\u0061\": 3}",
     "line 2: the name \"a\" twice"},
    {"a_name_of_value_and_object", "{\"a\": 1,\n\"a\": {}}", "line 2: the name \"a\" twice"},
    {"a_name_twice_deep_inside", "{\"o\": {\n\"a\": 1,\n\"a\": 1}}",
     "line 3: the name \"a\" twice"},
    {"null", "{\n\"a\": null}", "line 2: null is not a value that can be read here"},
    {"an_array", "{\n\"a\": [1, \"]\"]}", "line 2: an array is not a value"},
    {"an_int_too_large", "{\n\"a\": 2147483648}", "line 2: the number 2147483648 is out of range"},
    {"an_int_far_too_large", "{\"a\": 123456789012345678901234567890}", "line 1: the number 1234"},
    {"a_double_too_large", "{\"a\": 1e999}", "line 1:"},
    {"an_unknown_type", "{\n\"a\": {\"$colour\": 1}}",
     "line 2: not a value of a known type: \"$colour\""},
    {"a_type_among_other_names", "{\n\"a\": {\"b\": 1,\n\"$int64\": \"1\"}}",
     "line 3: the type \"$int64\""},
    {"a_name_after_a_type", "{\"a\": {\"$int64\": \"1\",\n\"b\": 1}}", "line 1: not a value"},
    {"a_type_at_the_root", "{\"$int64\": \"1\"}", "line 1: the type \"$int64\""},
    {"a_type_twice", "{\"a\": {\"$int64\": \"1\", \"$int64\": \"2\"}}", "line 1: not a value"},
    {"a_64_bit_number_as_a_number", "{\"a\": {\"$int64\": 1}}", "line 1: not a value"},
    {"a_64_bit_number_too_large", "{\"a\": {\"$int64\": \"9223372036854775808\"}}", "not a value"},
    {"a_64_bit_number_that_is_not_a_number", "{\"a\": {\"$int64\": \"1x\"}}", "not a value"},
    {"bytes_that_are_not_base64", "{\"a\": {\"$bytes\": \"ab*=\"}}", "not a value"},
    {"bytes_that_are_a_number", "{\"a\": {\"$bytes\": 1}}", "not a value"},
    {"a_rectangle_of_three_numbers", "{\"a\": {\"$rect\": [1, 2, 3]}}", "not a value"},
    {"a_rectangle_of_fractions", "{\"a\": {\"$rect\": [1, 2, 3, 4.5]}}", "not a value"},
    {"a_rectangle_of_texts", "{\"a\": {\"$rect\": [1, 2, 3, \"4\"]}}", "not a value"},
    {"a_rectangle_too_wide", "{\"a\": {\"$rect\": [2147483647, 0, 2, 1]}}", "not a value"},
    {"an_identifier_that_is_not_valid", "{\"a\": {\"$uuid\": \"garbage\"}}", "not a value"},
    {"null_text_that_is_not_null", "{\"a\": {\"$string\": \"x\"}}", "not a value"},
    {"objects_65_deep", nestedObjects(66), "line 1: objects nested more than 64 deep"},
    {"objects_ten_thousand_deep", nestedObjects(10000), "line 1: not JSON"},
    {"arrays_ten_thousand_deep", "{\"a\": " + QByteArray(10000, '['), "line 1: not JSON"},
};

} // namespace

ROW_TEST(PJsonReaderRefuses, with_the_line_and_the_reason) {
    PJsonReader reader;
    const PStatus status = reader.setDocument(GetParam().json);
    EXPECT_FALSE(status.isOk());
    EXPECT_TRUE(status.reason().startsWith(u"line ")) << status.reason().toStdString();
    EXPECT_TRUE(status.reason().contains(QLatin1String(GetParam().reason)))
        << status.reason().toStdString();
    EXPECT_EQ(reader.valueNames() + reader.objectNames(), QStringList());
}

ROWS_IN(Documents, PJsonReaderRefuses, hostileDocuments);

TEST(PJsonReader, refuses_a_document_over_64_mebibytes) {
    PJsonReader reader;
    const PStatus status = reader.setDocument("{}" + QByteArray((64 << 20) - 1, ' '));
    EXPECT_EQ(status.reason(), u"line 1: larger than 64 MiB"_qs);
}

TEST(PJsonReader, reports_the_line_of_values_and_objects) {
    PJsonReader reader;
    ASSERT_TRUE(reader
                    .setDocument("{\n\"a\": 1,\n\n\"o\": {\"b\": {\"$int64\":\n\"2\"},\n"
                                 "\"c\":\n3}\n, \"d\": 4}")
                    .isOk());
    EXPECT_EQ(reader.position(u"a"_qs), u"line 2"_qs);
    EXPECT_EQ(reader.position(u"o"_qs), u"line 4"_qs);
    EXPECT_EQ(reader.position(u"d"_qs), u"line 8"_qs);
    ASSERT_TRUE(reader.beginObject(u"o"_qs));
    EXPECT_EQ(reader.position(u"b"_qs), u"line 4"_qs);
    EXPECT_EQ(reader.position(u"c"_qs), u"line 6"_qs);
}

TEST(PJsonReader, takes_json_as_users_and_other_programs_write_it) {
    PJsonReader reader;
    ASSERT_TRUE(reader
                    .setDocument("\xEF\xBB\xBF \r\n{\"a\":1,\"b\" :\t-2.5E+1 , \"c\":{ } ,"
                                 "\"d\":\"\\u0041\\/\\n\\ud83d\\ude00}]\",\"e\":true,"
                                 "\"f\": { \"$int64\" : \"7\" } }\n")
                    .isOk());
    EXPECT_EQ(reader.readValue(u"a"_qs), QVariant(1));
    EXPECT_EQ(reader.readValue(u"b"_qs), QVariant(-25.0));
    EXPECT_EQ(reader.readValue(u"d"_qs), QVariant(u"A/\n😀}]"_qs));
    EXPECT_EQ(reader.readValue(u"e"_qs), QVariant(true));
    EXPECT_EQ(reader.readValue(u"f"_qs), QVariant(qint64(7)));
    EXPECT_EQ(reader.objectNames(), QStringList{u"c"_qs});
}

TEST(PJsonReader, can_be_read_before_it_has_a_document) {
    const PJsonReader reader;
    EXPECT_EQ(reader.valueNames(), QStringList());
    EXPECT_FALSE(reader.readValue(u"a"_qs).isValid());
}
