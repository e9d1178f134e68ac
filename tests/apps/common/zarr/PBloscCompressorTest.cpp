// SPDX-License-Identifier: MIT
#include <apps/common/zarr/PBloscCompressor.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

#include <blosc.h>

#include <random>

namespace {

std::vector<uchar> noise(std::size_t count) {
    std::mt19937 random(7);
    std::vector<uchar> bytes(count);
    for (uchar& byte : bytes)
        byte = uchar(random());
    return bytes;
}

std::vector<uchar> decompressed(const QByteArray& compressed, std::size_t count) {
    std::vector<uchar> bytes(count);
    EXPECT_EQ(blosc_decompress_ctx(compressed.constData(), bytes.data(), count, 1), int(count));
    return bytes;
}

TEST(BloscCompressor, what_it_compresses_is_read_back_whatever_the_threads) {
    std::vector<uchar> ramp(3'000'000);
    for (std::size_t i = 0; i < ramp.size(); ++i)
        ramp[i] = uchar(i / 1000);
    for (const int threads : {1, 3}) {
        PBloscCompressor compressor(threads);
        ASSERT_TRUE(compressor.compress(ramp.data(), ramp.size()).isOk());
        EXPECT_LT(compressor.result().size(), qsizetype(ramp.size() / 10));
        EXPECT_EQ(decompressed(compressor.result(), ramp.size()), ramp);
    }
}

TEST(BloscCompressor, noise_is_stored_with_sixteen_bytes_more) {
    const std::vector<uchar> bytes = noise(100'003);
    PBloscCompressor compressor(1);
    ASSERT_TRUE(compressor.compress(bytes.data(), bytes.size()).isOk());
    EXPECT_EQ(compressor.result().size(), qsizetype(bytes.size() + BLOSC_MAX_OVERHEAD));
    EXPECT_EQ(decompressed(compressor.result(), bytes.size()), bytes);
}

TEST(BloscCompressor, a_smaller_piece_after_a_larger_one_has_its_own_size) {
    PBloscCompressor compressor(1);
    const std::vector<uchar> bytes = noise(5000);
    ASSERT_TRUE(compressor.compress(bytes.data(), bytes.size()).isOk());
    ASSERT_TRUE(compressor.compress(bytes.data(), 6).isOk());
    EXPECT_EQ(decompressed(compressor.result(), 6),
              std::vector<uchar>(bytes.begin(), bytes.begin() + 6));
}

TEST(BloscCompressor, more_than_two_gigabytes_are_refused_with_their_number) {
    EXPECT_TRUE(PBloscCompressor::checkSize(2'147'483'631).isOk());
    const PStatus status = PBloscCompressor::checkSize(2'147'483'632);
    EXPECT_TRUE(status.reason().contains(u"2147483632"_qs)) << status.reason().toStdString();
    PBloscCompressor compressor(1);
    EXPECT_FALSE(compressor.compress(nullptr, 2'147'483'632).isOk()); // reads nothing
}

TEST(BloscCompressor, it_names_what_it_does_as_numcodecs_does) {
    const std::vector<uchar> bytes(1000);
    PBloscCompressor compressor(1);
    ASSERT_TRUE(compressor.compress(bytes.data(), bytes.size()).isOk());
    const QByteArray result = compressor.result();
    const QJsonObject json = PBloscCompressor::toJson();
    EXPECT_EQ(json.value(u"id"_qs), u"blosc"_qs);
    EXPECT_EQ(json.value(u"cname"_qs).toString(),
              QString::fromLatin1(blosc_cbuffer_complib(result.constData())).toLower());
    std::size_t typeSize = 0;
    int flags = 0;
    blosc_cbuffer_metainfo(result.constData(), &typeSize, &flags);
    EXPECT_EQ(typeSize, 1U);
    EXPECT_EQ(json.value(u"shuffle"_qs).toInt(),
              (flags & BLOSC_DOBITSHUFFLE) != 0 ? BLOSC_BITSHUFFLE : BLOSC_NOSHUFFLE);
}

TEST(BloscCompressor, it_uses_one_to_four_threads) {
    EXPECT_GE(PBloscCompressor::defaultThreads(), 1);
    EXPECT_LE(PBloscCompressor::defaultThreads(), 4);
}

} // namespace
