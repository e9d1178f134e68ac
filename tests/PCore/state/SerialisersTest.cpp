// SPDX-License-Identifier: MIT
#include <PCore/state/PBinaryReader.h>
#include <PCore/state/PBinaryWriter.h>
#include <PCore/state/PJsonReader.h>
#include <PCore/state/PJsonWriter.h>

#include <support/QtPrinters.h>

#include <QUuid>

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <type_traits>

// The rules of both formats: what was written can be read back, and anything else is refused.

namespace {

struct Json {
    using Writer = PJsonWriter;
    using Reader = PJsonReader;
};

struct Binary {
    using Writer = PBinaryWriter;
    using Reader = PBinaryReader;
};

template <typename Format>
class Serialisers : public testing::Test {
protected:
    /// Writes a value under a name and reads it back.
    QVariant comesBackAs(const QVariant& value) {
        typename Format::Writer valueWriter;
        EXPECT_TRUE(valueWriter.writeValue(u"v"_qs, value));
        typename Format::Reader valueReader;
        const PStatus status = valueReader.setDocument(valueWriter.document());
        EXPECT_TRUE(status.isOk()) << status.reason().toStdString();
        return valueReader.readValue(u"v"_qs);
    }

    void expectSame(const QVariant& value) {
        const QVariant back = comesBackAs(value);
        EXPECT_EQ(back.typeId(), value.typeId());
        EXPECT_EQ(back, value);
    }

    void load() {
        const PStatus status = reader.setDocument(writer.document());
        ASSERT_TRUE(status.isOk())
            << status.reason().toStdString() << writer.document().toStdString();
    }

    typename Format::Writer writer;
    typename Format::Reader reader;
};

using Formats = testing::Types<Json, Binary>;

struct FormatNames {
    template <typename Format>
    static std::string GetName(int) {
        return std::is_same_v<Format, Json> ? "Json" : "Binary";
    }
};

TYPED_TEST_SUITE(Serialisers, Formats, FormatNames);

QString named(int i) {
    return u"name%1"_qs.arg(i);
}

} // namespace

TYPED_TEST(Serialisers, bring_back_truth_values) {
    this->expectSame(true);
    this->expectSame(false);
}

TYPED_TEST(Serialisers, bring_back_every_int) {
    for (const int value :
         {0, -1, 42, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        this->expectSame(value);
}

TYPED_TEST(Serialisers, bring_back_64_bit_numbers_beyond_the_integers_of_a_double) {
    for (const qint64 value :
         {qint64(0), qint64(5), (qint64(1) << 53) + 1, std::numeric_limits<qint64>::min(),
          std::numeric_limits<qint64>::max()})
        this->expectSame(QVariant(value));
}

TYPED_TEST(Serialisers, bring_back_doubles_to_the_last_bit) {
    using Limits = std::numeric_limits<double>;
    for (const double value :
         {0.0, -0.0, 1.0, -3.0, 0.1, 1e22, 1e300, 1.0 / 3, 123456789.125, Limits::max(),
          Limits::lowest(), Limits::min(), Limits::denorm_min(), Limits::epsilon()}) {
        const QVariant back = this->comesBackAs(value);
        ASSERT_EQ(back.typeId(), QMetaType::Double) << value;
        const double number = back.toDouble();
        EXPECT_EQ(std::memcmp(&number, &value, sizeof value), 0) << value;
    }
}

TYPED_TEST(Serialisers, bring_back_text_of_every_kind) {
    for (const QString& text :
         {u"Gain"_qs, u"Усиление"_qs, u"\"quoted\" \\ /"_qs, u"line\r\nbreak\ttab"_qs,
          QString(QChar(0)), u"😀"_qs, u"$int64"_qs, u"\u2028"_qs})
        this->expectSame(text);
}

TYPED_TEST(Serialisers, bring_back_a_byte_order_mark_that_starts_a_text_or_a_name) {
    const QString text = QChar(QChar::ByteOrderMark) + u"gain"_qs;
    this->expectSame(text);
    this->writer.writeValue(text, 1);
    this->writer.beginObject(text + u'2');
    this->writer.endObject();
    this->load();
    EXPECT_EQ(this->reader.valueNames(), QStringList(text));
    EXPECT_EQ(this->reader.objectNames(), QStringList(text + u'2'));
}

TYPED_TEST(Serialisers, bring_back_half_a_surrogate_pair) {
    this->expectSame(QString(QChar(0xD83D)) + u'x');
    this->expectSame(u'x' + QString(QChar(0xDE00)));
}

TYPED_TEST(Serialisers, tell_null_text_from_empty_text) {
    EXPECT_TRUE(this->comesBackAs(QString()).toString().isNull());
    EXPECT_FALSE(this->comesBackAs(u""_qs).toString().isNull());
    this->expectSame(QString());
}

TYPED_TEST(Serialisers, bring_back_bytes_of_every_value) {
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all.append(char(byte));
    this->expectSame(all);
}

TYPED_TEST(Serialisers, tell_null_bytes_from_empty_bytes) {
    EXPECT_TRUE(this->comesBackAs(QByteArray()).toByteArray().isNull());
    EXPECT_FALSE(this->comesBackAs(QByteArray("")).toByteArray().isNull());
    this->expectSame(QByteArray());
    this->expectSame(QByteArray(""));
}

TYPED_TEST(Serialisers, bring_back_every_rectangle) {
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int most = std::numeric_limits<int>::max();
    this->expectSame(QRect(4, 6, 2736, 1824));
    this->expectSame(QRect());
    this->expectSame(QRect(-5, -6, 0, -3));
    this->expectSame(QRect(QPoint(least, least), QPoint(most, most)));
    this->expectSame(QRect(QPoint(most, most), QPoint(least, least)));
}

TYPED_TEST(Serialisers, bring_back_identifiers) {
    this->expectSame(QUuid(0x01234567, 0x89ab, 0xcdef, 1, 2, 3, 4, 5, 6, 7, 8));
    this->expectSame(QUuid());
}

TYPED_TEST(Serialisers, refuse_numbers_that_are_not_finite) {
    using Limits = std::numeric_limits<double>;
    for (const double value : {Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()})
        EXPECT_FALSE(this->writer.writeValue(u"v"_qs, value)) << value;
    this->load();
    EXPECT_EQ(this->reader.valueNames(), QStringList());
}

TYPED_TEST(Serialisers, refuse_types_that_have_no_form) {
    for (const QVariant& value : {QVariant(), QVariant(1u), QVariant(1.5f), QVariant(QSize(1, 2)),
                                  QVariant(QStringList{u"a"_qs})})
        EXPECT_FALSE(this->writer.writeValue(u"v"_qs, value)) << value.typeName();
    EXPECT_TRUE(this->writer.writeValue(u"v"_qs, 1)) << "the name must still be free";
}

TYPED_TEST(Serialisers, refuse_a_second_value_of_one_name) {
    EXPECT_TRUE(this->writer.writeValue(u"v"_qs, 1));
    EXPECT_FALSE(this->writer.writeValue(u"v"_qs, 2));
    this->load();
    EXPECT_EQ(this->reader.readValue(u"v"_qs), QVariant(1));
}

TYPED_TEST(Serialisers, leave_out_an_object_whose_name_was_used_with_all_it_holds) {
    this->writer.writeValue(u"a"_qs, 1);
    this->writer.beginObject(u"a"_qs);
    EXPECT_FALSE(this->writer.writeValue(u"b"_qs, 2));
    this->writer.beginObject(u"inner"_qs);
    EXPECT_FALSE(this->writer.writeValue(u"c"_qs, 3));
    this->writer.endObject();
    this->writer.endObject();
    EXPECT_TRUE(this->writer.writeValue(u"d"_qs, 4));
    this->load();
    EXPECT_EQ(this->reader.objectNames(), QStringList());
    EXPECT_EQ(this->reader.valueNames(), QStringList({u"a"_qs, u"d"_qs}));
}

TYPED_TEST(Serialisers, use_one_name_in_different_objects) {
    this->writer.writeValue(u"v"_qs, 1);
    this->writer.beginObject(u"o"_qs);
    EXPECT_TRUE(this->writer.writeValue(u"v"_qs, 2));
    this->writer.endObject();
    this->load();
    EXPECT_EQ(this->reader.readValue(u"v"_qs), QVariant(1));
    ASSERT_TRUE(this->reader.beginObject(u"o"_qs));
    EXPECT_EQ(this->reader.readValue(u"v"_qs), QVariant(2));
    this->reader.endObject();
    EXPECT_EQ(this->reader.readValue(u"v"_qs), QVariant(1));
}

TYPED_TEST(Serialisers, keep_names_in_the_order_of_writing) {
    QStringList values, objects;
    for (int i = 20; i > 0; --i) {
        values.append(named(i));
        this->writer.writeValue(values.last(), i);
        objects.append(named(100 + i));
        this->writer.beginObject(objects.last());
        this->writer.endObject();
    }
    this->load();
    EXPECT_EQ(this->reader.valueNames(), values);
    EXPECT_EQ(this->reader.objectNames(), objects);
}

TYPED_TEST(Serialisers, take_any_name) {
    const QStringList names{QString(QLatin1String("")),
                            u"$int64"_qs,
                            u"$$bytes"_qs,
                            u"type"_qs,
                            u"a \"b\"\n"_qs,
                            u"имя"_qs};
    for (const QString& name : names) {
        this->writer.beginObject(name);
        EXPECT_TRUE(this->writer.writeValue(name, name));
        this->writer.endObject();
    }
    this->load();
    EXPECT_EQ(this->reader.objectNames(), names);
    for (const QString& name : names) {
        ASSERT_TRUE(this->reader.beginObject(name));
        EXPECT_EQ(this->reader.readValue(name), QVariant(name));
        this->reader.endObject();
    }
}

TYPED_TEST(Serialisers, never_take_a_callers_object_for_a_typed_value) {
    this->writer.beginObject(u"o"_qs);
    this->writer.writeValue(u"$int64"_qs, u"5"_qs);
    this->writer.endObject();
    this->load();
    ASSERT_TRUE(this->reader.beginObject(u"o"_qs));
    EXPECT_EQ(this->reader.readValue(u"$int64"_qs), QVariant(u"5"_qs));
}

TYPED_TEST(Serialisers, close_what_is_open_in_a_document_and_can_go_on) {
    this->writer.beginObject(u"o"_qs);
    this->writer.writeValue(u"a"_qs, 1);
    this->load();
    this->writer.writeValue(u"b"_qs, 2);
    this->writer.endObject();
    this->writer.writeValue(u"c"_qs, 3);
    this->load();
    EXPECT_EQ(this->reader.readValue(u"c"_qs), QVariant(3));
    ASSERT_TRUE(this->reader.beginObject(u"o"_qs));
    EXPECT_EQ(this->reader.readValue(u"b"_qs), QVariant(2));
}

TYPED_TEST(Serialisers, ignore_an_end_without_a_beginning) {
    this->writer.endObject();
    this->writer.writeValue(u"a"_qs, 1);
    this->load();
    this->reader.endObject();
    EXPECT_EQ(this->reader.readValue(u"a"_qs), QVariant(1));
}

TYPED_TEST(Serialisers, stay_where_they_are_if_there_is_no_such_object) {
    this->writer.writeValue(u"a"_qs, 1);
    this->load();
    EXPECT_FALSE(this->reader.beginObject(u"nothing"_qs));
    EXPECT_FALSE(this->reader.beginObject(u"a"_qs)) << "a value is not an object";
    EXPECT_EQ(this->reader.readValue(u"a"_qs), QVariant(1));
}

TYPED_TEST(Serialisers, answer_an_invalid_value_and_no_position_for_a_name_that_is_not_there) {
    this->writer.beginObject(u"o"_qs);
    this->load();
    EXPECT_FALSE(this->reader.readValue(u"nothing"_qs).isValid());
    EXPECT_FALSE(this->reader.readValue(u"o"_qs).isValid()) << "an object is not a value";
    EXPECT_EQ(this->reader.position(u"nothing"_qs), QString());
}

TYPED_TEST(Serialisers, write_objects_64_deep_and_no_deeper) {
    for (int i = 0; i < 64; ++i)
        this->writer.beginObject(named(i));
    EXPECT_TRUE(this->writer.writeValue(u"bottom"_qs, 1));
    this->writer.beginObject(u"too deep"_qs);
    EXPECT_FALSE(this->writer.writeValue(u"v"_qs, 1));
    this->load();
    for (int i = 0; i < 64; ++i)
        ASSERT_TRUE(this->reader.beginObject(named(i))) << i;
    EXPECT_EQ(this->reader.readValue(u"bottom"_qs), QVariant(1));
    EXPECT_EQ(this->reader.objectNames(), QStringList());
}

TYPED_TEST(Serialisers, hold_ten_thousand_names_in_one_object) {
    for (int i = 0; i < 10000; ++i)
        EXPECT_TRUE(this->writer.writeValue(named(i), i));
    this->load();
    for (int i = 0; i < 10000; ++i)
        ASSERT_EQ(this->reader.readValue(named(i)), QVariant(i));
}

TYPED_TEST(Serialisers, make_an_empty_document_that_can_be_read) {
    this->load();
    EXPECT_EQ(this->reader.valueNames(), QStringList());
    EXPECT_EQ(this->reader.objectNames(), QStringList());
}

TYPED_TEST(Serialisers, stand_at_the_root_of_a_new_document_whatever_object_they_were_in) {
    this->writer.beginObject(u"o"_qs);
    this->load();
    ASSERT_TRUE(this->reader.beginObject(u"o"_qs));
    this->load();
    EXPECT_EQ(this->reader.objectNames(), QStringList{u"o"_qs});
}

TYPED_TEST(Serialisers, are_empty_after_a_document_that_was_refused) {
    this->writer.writeValue(u"a"_qs, 1);
    this->load();
    EXPECT_FALSE(this->reader.setDocument("nonsense").isOk());
    EXPECT_EQ(this->reader.valueNames(), QStringList());
}

TYPED_TEST(Serialisers, refuse_a_document_cut_short_anywhere) {
    this->writer.beginObject(u"camera"_qs);
    this->writer.writeValue(u"gain"_qs, 1.5);
    this->writer.writeValue(u"bytes"_qs, QByteArray("abc"));
    const QByteArray whole = this->writer.document().trimmed();
    for (qsizetype size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(this->reader.setDocument(whole.left(size)).isOk()) << size;
}
