// SPDX-License-Identifier: MIT
#include <PCore/state/PJsonWriter.h>

#include <support/QtPrinters.h>

#include <QJsonDocument>
#include <QUuid>

#include <gtest/gtest.h>

TEST(PJsonWriter, writes_one_value_a_line_in_the_order_of_writing) {
    PJsonWriter writer;
    writer.writeValue(u"zoom"_qs, 2);
    writer.beginObject(u"camera"_qs);
    writer.writeValue(u"gain"_qs, 1.0);
    writer.writeValue(u"title"_qs, u"Усиление"_qs);
    writer.beginObject(u"empty"_qs);
    writer.endObject();
    writer.endObject();
    writer.writeValue(u"auto"_qs, false);
    EXPECT_EQ(writer.document(), QByteArray("{\n"
                                            "    \"zoom\": 2,\n"
                                            "    \"camera\": {\n"
                                            "        \"gain\": 1.0,\n"
                                            "        \"title\": \"Усиление\",\n"
                                            "        \"empty\": {}\n"
                                            "    },\n"
                                            "    \"auto\": false\n"
                                            "}\n"));
}

TEST(PJsonWriter, writes_types_that_json_lacks_as_an_object_that_names_the_type) {
    PJsonWriter writer;
    writer.writeValue(u"n"_qs, qint64(9007199254740993));
    writer.writeValue(u"b"_qs, QByteArray("ab"));
    writer.writeValue(u"r"_qs, QRect(1, 2, 30, 40));
    writer.writeValue(u"u"_qs, QUuid());
    writer.writeValue(u"s"_qs, QString());
    EXPECT_EQ(writer.document(),
              QByteArray("{\n"
                         "    \"n\": {\"$int64\": \"9007199254740993\"},\n"
                         "    \"b\": {\"$bytes\": \"YWI=\"},\n"
                         "    \"r\": {\"$rect\": [1, 2, 30, 40]},\n"
                         "    \"u\": {\"$uuid\": \"{00000000-0000-0000-0000-000000000000}\"},\n"
                         "    \"s\": {\"$string\": null}\n"
                         "}\n"));
}

TEST(PJsonWriter, writes_text_that_any_json_parser_takes) {
    PJsonWriter writer;
    writer.writeValue(u"control \x01\x1f"_qs, u"\"\\\n\t"_qs + QChar(0));
    QJsonParseError error;
    QJsonDocument::fromJson(writer.document(), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError);
    for (const char byte : writer.document())
        EXPECT_TRUE(byte == '\n' || static_cast<unsigned char>(byte) >= ' ');
}

TEST(PJsonWriter, makes_an_empty_object_of_nothing) {
    EXPECT_EQ(PJsonWriter().document(), QByteArray("{}\n"));
}

TEST(PJsonWriter, closes_what_is_open) {
    PJsonWriter writer;
    writer.beginObject(u"a"_qs);
    writer.beginObject(u"b"_qs);
    EXPECT_EQ(writer.document(), QByteArray("{\n    \"a\": {\n        \"b\": {}\n    }\n}\n"));
}
