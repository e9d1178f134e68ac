// SPDX-License-Identifier: MIT
#include <PCore/state/PBinaryFormat.h>
#include <PCore/state/PBinaryReader.h>
#include <PCore/state/PBinaryWriter.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QIODevice>
#include <QRandomGenerator>
#include <QtEndian>

#include <gtest/gtest.h>

namespace {

template <typename T>
QByteArray number(T value) {
    const T bigEndian = qToBigEndian(value);
    return QByteArray(reinterpret_cast<const char*>(&bigEndian), sizeof bigEndian);
}

/// A document with these records, valid or not, and the right checksum.
QByteArray makeDocument(const QByteArray& records) {
    const QByteArray body = number(PBinaryFormat::magic) + number(PBinaryFormat::version) + records;
    return body + number(PBinaryFormat::checksum(body));
}

QByteArray text(const char* latin1) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << QString::fromLatin1(latin1);
    return bytes;
}

QByteArray valueRecord(const char* name, quint32 type, const QByteArray& payload) {
    return '\2' + text(name) + number(type) + payload;
}

const QByteArray end(1, '\0');

struct HostileRecords {
    const char* name;
    QByteArray records;
    const char* reason; // a part of the message, the byte first
};

class PBinaryReaderRefuses : public RowTest<HostileRecords> {};

QByteArray nestedRecords(int depth) {
    return ('\1' + text("a")).repeated(depth) + QByteArray(depth + 1, '\0');
}

const QByteArray oneInt = valueRecord("a", QMetaType::Int, number(qint32(1)));

const HostileRecords hostileRecords[] = {
    {"no_end", oneInt, "byte 23: a record is cut short"},
    {"no_records", "", "byte 8: a record is cut short"},
    {"an_end_too_many", oneInt + end + end, "byte 24: bytes after the end"},
    {"an_unknown_record", '\7' + text("a") + end, "an unknown record 7"},
    {"a_name_cut_short", '\2' + number(quint32(1000)), "a record is cut short"},
    {"a_name_of_four_gigabytes", '\2' + number(quint32(0xFFFFFFFE)), "a record is cut short"},
    {"bytes_of_two_gigabytes", valueRecord("a", QMetaType::QByteArray, number(quint32(0x7FFFFFFF))),
     "a value is cut short"},
    {"an_int_cut_short", valueRecord("a", QMetaType::Int, QByteArray(2, '\0')),
     "a value is cut short"},
    {"a_type_that_is_never_written", valueRecord("a", QMetaType::QSize, number(quint64(1))) + end,
     "a value of type 21 that is never written"},
    {"a_number_that_is_not_finite",
     valueRecord("a", QMetaType::Double, number(quint64(0x7FF8000000000000))) + end,
     "a value of type 6 that is never written"},
    {"a_name_twice", oneInt + oneInt + end, "the name \"a\" twice"},
    {"objects_65_deep", nestedRecords(65), "objects nested more than 64 deep"},
    {"objects_a_hundred_thousand_deep", nestedRecords(100000), "objects nested more than 64 deep"},
};

} // namespace

ROW_TEST(PBinaryReaderRefuses, with_the_byte_and_the_reason) {
    PBinaryReader reader;
    const PStatus status = reader.setDocument(makeDocument(GetParam().records));
    EXPECT_FALSE(status.isOk());
    EXPECT_TRUE(status.reason().startsWith(u"byte ")) << status.reason().toStdString();
    EXPECT_TRUE(status.reason().contains(QLatin1String(GetParam().reason)))
        << status.reason().toStdString();
    EXPECT_EQ(reader.valueNames() + reader.objectNames(), QStringList());
}

ROWS_IN(Records, PBinaryReaderRefuses, hostileRecords);

TEST(PBinaryReader, takes_the_records_that_the_rows_above_are_made_of) {
    PBinaryReader reader;
    const PStatus status = reader.setDocument(makeDocument(oneInt + end));
    EXPECT_TRUE(status.isOk()) << status.reason().toStdString();
    EXPECT_EQ(reader.readValue(u"a"_qs), QVariant(1));
}

TEST(PBinaryReader, names_a_file_that_is_not_of_this_format) {
    PBinaryReader reader;
    for (const QByteArray& bytes : {QByteArray(), QByteArray("PCD"), QByteArray("{\"a\": 1}")}) {
        EXPECT_EQ(reader.setDocument(bytes).reason(),
                  u"byte 0: not this binary format (it starts with \"PCDS\")"_qs);
    }
}

TEST(PBinaryReader, names_an_unknown_version) {
    QByteArray bytes = PBinaryWriter().document();
    bytes[7] = 2;
    PBinaryReader reader;
    EXPECT_EQ(reader.setDocument(bytes).reason(),
              u"byte 4: version 2 is unknown (1 was expected)"_qs);
}

TEST(PBinaryReader, finds_every_changed_bit) {
    PBinaryWriter writer;
    writer.writeValue(u"gain"_qs, 1.5);
    const QByteArray whole = writer.document();
    PBinaryReader reader;
    for (qsizetype bit = 0; bit < whole.size() * 8; ++bit) {
        QByteArray changed = whole;
        changed[bit / 8] = char(changed[bit / 8] ^ (1 << (bit % 8)));
        EXPECT_FALSE(reader.setDocument(changed).isOk()) << bit;
    }
}

TEST(PBinaryReader, survives_records_of_random_bytes) {
    QRandomGenerator random(1);
    PBinaryReader reader;
    for (int i = 0; i < 2000; ++i) {
        QByteArray records(1 + random.bounded(60), '\0');
        for (char& byte : records)
            byte = char(random.bounded(3) ? random.bounded(4) : random.bounded(256));
        // Whatever the reason, a refused document leaves nothing behind.
        if (!reader.setDocument(makeDocument(records)).isOk()) {
            EXPECT_EQ(reader.valueNames() + reader.objectNames(), QStringList());
        }
    }
}

TEST(PBinaryReader, reports_the_byte_where_a_record_starts) {
    PBinaryReader reader;
    ASSERT_TRUE(
        reader.setDocument(makeDocument(oneInt + '\1' + text("o") + oneInt + end + end)).isOk());
    EXPECT_EQ(reader.position(u"a"_qs), u"byte 8"_qs);
    EXPECT_EQ(reader.position(u"o"_qs), u"byte 23"_qs);
    ASSERT_TRUE(reader.beginObject(u"o"_qs));
    EXPECT_EQ(reader.position(u"a"_qs), u"byte 30"_qs);
}

TEST(PBinaryFormat, has_the_checksum_that_the_standard_gives_for_its_check_text) {
    EXPECT_EQ(PBinaryFormat::checksum("123456789"), 0xCBF43926u);
    EXPECT_EQ(PBinaryFormat::checksum(""), 0u);
}

TEST(PBinaryWriter, starts_with_the_magic_number_and_the_version) {
    EXPECT_EQ(PBinaryWriter().document().left(9).toHex(), QByteArray("504344530000000100"));
}
