// SPDX-License-Identifier: MIT
#include <PCd/PEnumeration.h>

#include <support/QtPrinters.h>

#include <QIODevice>

#include <gtest/gtest.h>

namespace {

const QUuid idOne(u"{00112233-4455-6677-8899-aabbccddeeff}"_qs);
const QUuid idTwo(u"{00000000-0000-0000-0000-000000000002}"_qs);

PEnumeration twoItems() {
    PEnumeration enumeration;
    enumeration.addItem(idOne, u"AC"_qs, u"Mains"_qs, "1");
    enumeration.addItem(idTwo, u"D"_qs, QString(), QByteArray());
    return enumeration;
}

QByteArray streamForm(const PEnumeration& enumeration) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << enumeration;
    return bytes;
}

} // namespace

TEST(PEnumeration, keeps_the_order_of_its_items) {
    const PEnumeration enumeration = twoItems();
    ASSERT_EQ(enumeration.items().size(), 2);
    EXPECT_EQ(enumeration.items().at(0).name, u"AC"_qs);
    EXPECT_EQ(enumeration.items().at(0).title, u"Mains"_qs);
    EXPECT_EQ(enumeration.items().at(0).data, "1");
    EXPECT_EQ(enumeration.items().at(1).id, idTwo);
}

TEST(PEnumeration, finds_the_first_item_of_an_id) {
    PEnumeration enumeration = twoItems();
    enumeration.addItem(idTwo, u"again"_qs, QString(), QByteArray());
    EXPECT_EQ(enumeration.getItem(idTwo).name, u"D"_qs);
}

TEST(PEnumeration, gives_an_empty_item_for_an_unknown_id) {
    const PEnumerationItem item = twoItems().getItem(QUuid());
    EXPECT_EQ(item, PEnumerationItem());
}

TEST(PEnumeration, is_equal_only_if_every_field_of_every_item_is) {
    const auto withOne = [](QUuid id, const char* name, const char* title, const char* data) {
        PEnumeration enumeration;
        enumeration.addItem(id, QString::fromLatin1(name), QString::fromLatin1(title), data);
        return enumeration;
    };
    const PEnumeration enumeration = withOne(idOne, "n", "t", "d");
    EXPECT_TRUE(enumeration == withOne(idOne, "n", "t", "d"));
    EXPECT_FALSE(enumeration != withOne(idOne, "n", "t", "d"));
    EXPECT_TRUE(enumeration != withOne(idTwo, "n", "t", "d"));
    EXPECT_TRUE(enumeration != withOne(idOne, "N", "t", "d"));
    EXPECT_TRUE(enumeration != withOne(idOne, "n", "T", "d"));
    EXPECT_TRUE(enumeration != withOne(idOne, "n", "t", "D"));
    EXPECT_TRUE(enumeration != PEnumeration());
    EXPECT_TRUE(enumeration != twoItems());
}

TEST(PEnumeration, is_written_to_a_stream_as_the_number_of_items_and_their_fields) {
    EXPECT_EQ(streamForm(twoItems()).toHex(),
              QByteArray("00000002"
                         "00112233445566778899aabbccddeeff" // id
                         "0000000400410043"                 // name: bytes of UTF-16, "AC"
                         "0000000a004d00610069006e0073"     // title: "Mains"
                         "0000000131"                       // data: bytes, "1"
                         "00000000000000000000000000000002"
                         "000000020044"
                         "ffffffff"    // null text
                         "ffffffff")); // null bytes
}

TEST(PEnumeration, comes_back_from_a_stream) {
    PEnumeration enumeration;
    enumeration.addItem(QUuid(), u"old"_qs, QString(), QByteArray());
    QDataStream in(streamForm(twoItems()));
    in >> enumeration;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_TRUE(in.atEnd());
    EXPECT_TRUE(enumeration == twoItems());
}

TEST(PEnumeration, comes_back_from_a_stream_also_in_a_variant) {
    const QVariant value = QVariant::fromValue(twoItems());
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << value;
    QVariant back;
    QDataStream in(bytes);
    in >> back;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_EQ(back, value);
}

TEST(PEnumeration, comes_back_empty_from_any_stream_that_ends_early) {
    const QByteArray whole = streamForm(twoItems());
    for (qsizetype length = 0; length < whole.size(); ++length) {
        PEnumeration enumeration = twoItems();
        QDataStream in(whole.left(length));
        in >> enumeration;
        EXPECT_EQ(in.status(), QDataStream::ReadPastEnd) << length << " bytes";
        EXPECT_TRUE(enumeration.items().isEmpty()) << length << " bytes";
    }
}

TEST(PEnumeration, does_not_trust_a_number_of_items_that_are_not_there) {
    PEnumeration enumeration;
    QDataStream in(QByteArray::fromHex("ffffffff"));
    in >> enumeration;
    EXPECT_EQ(in.status(), QDataStream::ReadPastEnd);
    EXPECT_TRUE(enumeration.items().isEmpty());
}
