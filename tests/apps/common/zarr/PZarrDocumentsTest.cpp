// SPDX-License-Identifier: MIT
#include <apps/common/zarr/PZarrDocuments.h>

#include <support/QtPrinters.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

QJsonObject parsed(const QByteArray& json) {
    return QJsonDocument::fromJson(json).object();
}

QJsonObject multiscale(const PZarrDocuments::Image& image) {
    return parsed(PZarrDocuments::image(image)).value(u"multiscales"_qs).toArray()[0].toObject();
}

QJsonArray transformations(const PZarrDocuments::Image& image, int level) {
    const QJsonObject data = multiscale(image).value(u"datasets"_qs).toArray()[level].toObject();
    return data.value(u"coordinateTransformations"_qs).toArray();
}

PZarrDocuments::Image colourImage() {
    return {u"run.ome.zarr"_qs, 3, {{600, 401}, {300, 200}, {150, 100}}, 0.5, 0.04};
}

TEST(ZarrDocuments, an_array_has_a_chunk_for_each_channel_of_each_frame) {
    const QJsonObject array = parsed(PZarrDocuments::array({640, 480}, 3, 1'000'000'000));
    EXPECT_EQ(array.value(u"zarr_format"_qs), 2);
    EXPECT_EQ(array.value(u"shape"_qs), (QJsonArray{1'000'000'000, 3, 480, 640}));
    EXPECT_EQ(array.value(u"chunks"_qs), (QJsonArray{1, 1, 480, 640}));
    EXPECT_EQ(array.value(u"dtype"_qs), u"|u1"_qs);
    EXPECT_EQ(array.value(u"fill_value"_qs), 0);
    EXPECT_EQ(array.value(u"order"_qs), u"C"_qs);
    EXPECT_TRUE(array.value(u"filters"_qs).isNull());
    EXPECT_EQ(array.value(u"dimension_separator"_qs), u"/"_qs);
    EXPECT_EQ(array.value(u"compressor"_qs).toObject().value(u"id"_qs), u"blosc"_qs);
}

TEST(ZarrDocuments, groups_have_the_version_and_the_layout) {
    EXPECT_EQ(parsed(PZarrDocuments::group()), (QJsonObject{{u"zarr_format"_qs, 2}}));
    EXPECT_EQ(parsed(PZarrDocuments::layout()), (QJsonObject{{u"bioformats2raw.layout"_qs, 3}}));
    EXPECT_EQ(parsed(PZarrDocuments::series()), (QJsonObject{{u"series"_qs, QJsonArray{u"0"_qs}}}));
}

TEST(ZarrDocuments, axes_have_the_units_that_are_known) {
    const auto units = [](const PZarrDocuments::Image& image) {
        QStringList texts;
        for (const QJsonValue& axis : multiscale(image).value(u"axes"_qs).toArray())
            texts.append(axis[u"name"_qs].toString() + u' ' + axis[u"type"_qs].toString() + u' ' +
                         axis[u"unit"_qs].toString(u"-"_qs));
        return texts.join(u", "_qs);
    };
    PZarrDocuments::Image image = colourImage();
    EXPECT_EQ(units(image),
              u"t time second, c channel -, y space micrometer, x space micrometer"_qs);
    image.pixelSizeUm.reset();
    EXPECT_EQ(units(image), u"t time second, c channel -, y space -, x space -"_qs);
    image.timeStep.reset();
    EXPECT_EQ(units(image), u"t time -, c channel -, y space -, x space -"_qs);
}

TEST(ZarrDocuments, each_level_has_its_scale_and_the_place_of_its_first_pixel) {
    const PZarrDocuments::Image image = colourImage();
    const auto scale = [](double size) {
        return QJsonObject{{u"type"_qs, u"scale"_qs},
                           {u"scale"_qs, QJsonArray{0.04, 1, size, size}}};
    };
    EXPECT_EQ(transformations(image, 0), QJsonArray{scale(0.5)});
    const auto shift = [](double by) {
        return QJsonObject{{u"type"_qs, u"translation"_qs},
                           {u"translation"_qs, QJsonArray{0, 0, by, by}}};
    };
    // The first pixel of the second level is the mean of those at 0 and 0.5.
    EXPECT_EQ(transformations(image, 1), (QJsonArray{scale(1), shift(0.25)}));
    EXPECT_EQ(transformations(image, 2), (QJsonArray{scale(2), shift(0.75)}));
}

TEST(ZarrDocuments, unknown_sizes_and_steps_are_one) {
    const PZarrDocuments::Image image{u"a"_qs, 1, {{6, 4}}, {}, {}};
    EXPECT_EQ(transformations(image, 0),
              QJsonArray{
                  (QJsonObject{{u"type"_qs, u"scale"_qs}, {u"scale"_qs, QJsonArray{1, 1, 1, 1}}})});
    EXPECT_FALSE(multiscale(image).contains(u"type"_qs)); // nothing was made smaller
}

TEST(ZarrDocuments, channels_have_their_colours) {
    const auto colours = [](const PZarrDocuments::Image& image) {
        QStringList texts;
        const QJsonObject omero =
            parsed(PZarrDocuments::image(image)).value(u"omero"_qs).toObject();
        for (const QJsonValue& channel : omero.value(u"channels"_qs).toArray())
            texts.append(channel[u"label"_qs].toString() + u' ' + channel[u"color"_qs].toString());
        return texts.join(u", "_qs) + u": "_qs + omero[u"rdefs"_qs][u"model"_qs].toString();
    };
    PZarrDocuments::Image image = colourImage();
    EXPECT_EQ(colours(image), u"Red FF0000, Green 00FF00, Blue 0000FF: color"_qs);
    image.channels = 1;
    EXPECT_EQ(colours(image), u"Grey FFFFFF: greyscale"_qs);
}

} // namespace
