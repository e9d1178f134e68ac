// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTiffChain.h>

#include <apps/common/tiff/PTransactionalFile.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

namespace {

/// Bytes from numbers of these widths, little-endian.
QByteArray littleEndian(std::initializer_list<std::pair<int, quint64>> numbers) {
    QByteArray all;
    for (const auto& [width, number] : numbers) {
        for (int i = 0; i < width; ++i)
            all.append(char(number >> (8 * i)));
    }
    return all;
}

QByteArray classicHeader(quint64 first) {
    return "II" + littleEndian({{2, 42}, {4, first}});
}

/// A directory of one entry, 18 bytes.
QByteArray classicDirectory(quint64 next) {
    return littleEndian({{2, 1}, {8, 0}, {4, 0}, {4, next}});
}

QByteArray bigHeader(quint64 first) {
    return "II" + littleEndian({{2, 43}, {2, 8}, {2, 0}, {8, first}});
}

/// A directory of one entry, 36 bytes.
QByteArray bigDirectory(quint64 next) {
    return littleEndian({{8, 1}, {8, 0}, {8, 0}, {4, 0}, {8, next}});
}

struct ChainRow {
    const char* name;
    QByteArray content;
    quint64 directories;
};

class TiffChain : public FolderTest, public WithRow<ChainRow> {};

ROW_TEST(TiffChain, counts_the_directories_that_can_be_reached) {
    PTransactionalFile file;
    ASSERT_TRUE(file.create(path(u"a.tif"_qs)).isOk());
    const QByteArray content = GetParam().content;
    ASSERT_TRUE(content.isEmpty() || file.write(0, content.constData(), content.size()));
    EXPECT_EQ(PTiffChain::count(file, 5), GetParam().directories);
}

const ChainRow chains[] = {
    {"none_in_an_empty_file", QByteArray(), 0},
    {"none_in_a_header", classicHeader(0), 0},
    {"one", classicHeader(8) + classicDirectory(0), 1},
    {"three", classicHeader(8) + classicDirectory(26) + classicDirectory(44) + classicDirectory(0),
     3},
    {"three_in_a_bigtiff", bigHeader(16) + bigDirectory(52) + bigDirectory(88) + bigDirectory(0),
     3},
    {"those_before_one_of_zeros", classicHeader(8) + classicDirectory(26) + QByteArray(18, '\0'),
     1},
    {"those_before_the_end_of_the_file", classicHeader(8) + classicDirectory(26), 1},
    {"those_before_one_that_is_cut",
     classicHeader(8) + classicDirectory(26) + classicDirectory(0).left(17), 1},
    {"those_before_one_far_beyond_the_end", bigHeader(16) + bigDirectory(~quint64(0)), 1},
    {"no_more_than_asked_for_in_a_ring", classicHeader(8) + classicDirectory(8), 5},
};

ROWS_IN(Chains, TiffChain, chains);

} // namespace
