// SPDX-License-Identifier: MIT
#include <apps/common/zarr/PZarrDocuments.h>

#include <apps/common/zarr/PBloscCompressor.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace {

const QString ngffVersion = u"0.4"_qs;

QByteArray jsonText(const QJsonObject& object) {
    return QJsonDocument(object).toJson();
}

QJsonObject makeAxis(const QString& name, const QString& type, const QString& unit) {
    QJsonObject axis{{u"name"_qs, name}, {u"type"_qs, type}};
    if (!unit.isEmpty())
        axis.insert(u"unit"_qs, unit);
    return axis;
}

QJsonArray imageAxes(const PZarrDocuments::Image& image) {
    const QString second = image.timeStep ? u"second"_qs : QString();
    const QString length = image.pixelSizeUm ? u"micrometer"_qs : QString();
    const QString space = u"space"_qs;
    return {makeAxis(u"t"_qs, u"time"_qs, second), makeAxis(u"c"_qs, u"channel"_qs, {}),
            makeAxis(u"y"_qs, space, length), makeAxis(u"x"_qs, space, length)};
}

/// Level n has pixels of 2^n times the size. The centre of its first one is the mean of the
/// centres of those that it was made of.
QJsonArray transformations(const PZarrDocuments::Image& image, int level) {
    const double pixel = image.pixelSizeUm.value_or(1);
    const double size = pixel * std::exp2(level);
    QJsonArray all{
        QJsonObject{{u"type"_qs, u"scale"_qs},
                    {u"scale"_qs, QJsonArray{image.timeStep.value_or(1), 1, size, size}}}};
    const double shift = (size - pixel) / 2;
    if (level > 0)
        all.append(QJsonObject{{u"type"_qs, u"translation"_qs},
                               {u"translation"_qs, QJsonArray{0, 0, shift, shift}}});
    return all;
}

QJsonObject multiscale(const PZarrDocuments::Image& image) {
    QJsonArray datasets;
    for (int level = 0; level < int(image.levels.size()); ++level) {
        datasets.append(
            QJsonObject{{u"path"_qs, QString::number(level)},
                        {u"coordinateTransformations"_qs, transformations(image, level)}});
    }
    QJsonObject scales{{u"version"_qs, ngffVersion},
                       {u"name"_qs, image.name},
                       {u"axes"_qs, imageAxes(image)},
                       {u"datasets"_qs, datasets}};
    if (image.levels.size() > 1) {
        scales.insert(u"type"_qs, u"mean"_qs);
        scales.insert(
            u"metadata"_qs,
            QJsonObject{{u"description"_qs, u"the mean of squares of 2 x 2 pixels, rounded"_qs}});
    }
    return scales;
}

QJsonObject makeChannel(const QString& label, const QString& colour) {
    return {{u"label"_qs, label},
            {u"color"_qs, colour},
            {u"active"_qs, true},
            {u"coefficient"_qs, 1},
            {u"family"_qs, u"linear"_qs},
            {u"inverted"_qs, false},
            {u"window"_qs,
             QJsonObject{{u"min"_qs, 0}, {u"max"_qs, 255}, {u"start"_qs, 0}, {u"end"_qs, 255}}}};
}

QJsonObject rendering(const PZarrDocuments::Image& image) {
    const bool isGrey = image.channels == 1;
    QJsonArray channels{makeChannel(u"Grey"_qs, u"FFFFFF"_qs)};
    if (!isGrey)
        channels = {makeChannel(u"Red"_qs, u"FF0000"_qs), makeChannel(u"Green"_qs, u"00FF00"_qs),
                    makeChannel(u"Blue"_qs, u"0000FF"_qs)};
    return {{u"version"_qs, ngffVersion},
            {u"name"_qs, image.name},
            {u"channels"_qs, channels},
            {u"rdefs"_qs, QJsonObject{{u"model"_qs, isGrey ? u"greyscale"_qs : u"color"_qs},
                                      {u"defaultT"_qs, 0},
                                      {u"defaultZ"_qs, 0}}}};
}

} // namespace

QByteArray PZarrDocuments::group() {
    return jsonText({{u"zarr_format"_qs, 2}});
}

QByteArray PZarrDocuments::array(const QSize& size, int channels, quint64 frames) {
    return jsonText(
        {{u"zarr_format"_qs, 2},
         {u"shape"_qs, QJsonArray{qint64(frames), channels, size.height(), size.width()}},
         {u"chunks"_qs, QJsonArray{1, 1, size.height(), size.width()}},
         {u"dtype"_qs, u"|u1"_qs},
         {u"compressor"_qs, PBloscCompressor::toJson()},
         {u"fill_value"_qs, 0},
         {u"filters"_qs, QJsonValue::Null},
         {u"order"_qs, u"C"_qs},
         {u"dimension_separator"_qs, u"/"_qs}});
}

QByteArray PZarrDocuments::layout() {
    return jsonText({{u"bioformats2raw.layout"_qs, 3}});
}

QByteArray PZarrDocuments::series() {
    return jsonText({{u"series"_qs, QJsonArray{u"0"_qs}}});
}

QByteArray PZarrDocuments::image(const Image& image) {
    return jsonText(
        {{u"multiscales"_qs, QJsonArray{multiscale(image)}}, {u"omero"_qs, rendering(image)}});
}
