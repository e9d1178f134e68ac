// SPDX-License-Identifier: MIT
#include <toupcam/trace/format/PTraceRecords.h>

#include <toupcam/trace/format/PTraceText.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

namespace {

constexpr int flagDigits = 16;

// The names of the fields once, for reading and for writing.

template <typename Record, typename Visit>
void visitHeader(Record& record, const Visit& visit) {
    visit("biSize", record.biSize);
    visit("biWidth", record.biWidth);
    visit("biHeight", record.biHeight);
    visit("biPlanes", record.biPlanes);
    visit("biBitCount", record.biBitCount);
    visit("biCompression", record.biCompression);
    visit("biSizeImage", record.biSizeImage);
    visit("biXPelsPerMeter", record.biXPelsPerMeter);
    visit("biYPelsPerMeter", record.biYPelsPerMeter);
    visit("biClrUsed", record.biClrUsed);
    visit("biClrImportant", record.biClrImportant);
}

template <typename Record, typename Visit>
void visitInfo(Record& record, const Visit& visit) {
    visit("width", record.width);
    visit("height", record.height);
    visit("flag", record.flag);
    visit("seq", record.seq);
    visit("timestamp", record.timestamp);
}

template <typename Record, typename Visit>
void visitModel(Record& record, const Visit& visit) {
    visit("maxspeed", record.maxspeed);
    visit("preview", record.preview);
    visit("still", record.still);
    visit("maxfanspeed", record.maxfanspeed);
    visit("ioctrol", record.ioctrol);
    visit("xpixsz", record.xpixsz);
    visit("ypixsz", record.ypixsz);
}

template <typename Record, typename Visit>
void visitResolution(Record& record, const Visit& visit) {
    visit("width", record.width);
    visit("height", record.height);
}

struct Writer {
    QJsonObject& object;

    template <typename T>
    void operator()(const char* name, T value) const {
        if constexpr (std::is_floating_point_v<T>)
            object.insert(QLatin1String(name), double(value));
        else
            object.insert(QLatin1String(name), qint64(value));
    }
};

struct Reader {
    const QJsonObject& object;
    QString& wrong;

    template <typename T>
    void operator()(const char* name, T& field) const {
        const QJsonValue value = object.value(QLatin1String(name));
        if (wrong.isEmpty() && !read(value, field))
            wrong = QString::fromLatin1(name);
    }

    template <typename T>
    static bool read(const QJsonValue& value, T& field) {
        field = T(value.toInteger());
        // A number with a fraction, or beyond the field, would come back as another one.
        return value.isDouble() && double(qint64(field)) == value.toDouble();
    }
    static bool read(const QJsonValue& value, float& field) {
        const double number = value.toDouble();
        const bool fits = std::abs(number) <= double(std::numeric_limits<float>::max());
        field = fits ? float(number) : 0;
        return fits && value.isDouble();
    }
};

/// How many resolutions a model declares, of those that fit.
unsigned resolutionCount(const ToupcamModelV2& model) {
    return std::min(std::max(model.preview, model.still), unsigned(TOUPCAM_MODEL_MAX_RES));
}

QJsonValue fromModel(const ToupcamModelV2* model) {
    if (model == nullptr)
        return QJsonValue::Null;
    QJsonObject object;
    visitModel(*model, Writer{object});
    object.insert(u"name"_qs, PTraceText::fromText(model->name, std::numeric_limits<int>::max()));
    object.insert(u"flag"_qs, PTraceText::fromBits(model->flag, flagDigits));
    QJsonArray resolutions;
    for (unsigned i = 0; i < resolutionCount(*model); ++i) {
        QJsonObject resolution;
        visitResolution(model->res[i], Writer{resolution});
        resolutions.append(resolution);
    }
    object.insert(u"res"_qs, resolutions);
    return object;
}

QString toResolutions(const QJsonArray& array, ToupcamModelV2& model) {
    QString wrong = array.size() == qsizetype(resolutionCount(model)) ? QString() : u"res"_qs;
    for (qsizetype i = 0; wrong.isEmpty() && i < array.size(); ++i) {
        const QJsonObject object = array.at(i).toObject();
        visitResolution(model.res[i], Reader{object, wrong});
    }
    return wrong;
}

QString toModel(const QJsonObject& object, PTraceRecords::Model& result) {
    QString wrong;
    visitModel(result.model, Reader{object, wrong});
    if (!wrong.isEmpty())
        return wrong;
    const std::optional<QByteArray> name = PTraceText::toText(object.value(u"name"_qs));
    const std::optional<quint64> flag = PTraceText::toBits(object.value(u"flag"_qs), flagDigits);
    if (!name || !flag)
        return name ? u"flag"_qs : u"name"_qs;
    result.name = *name;
    result.model.name = result.name.constData();
    result.model.flag = *flag;
    return toResolutions(object.value(u"res"_qs).toArray(), result.model);
}

/// False if the text is none, or does not fit.
template <std::size_t size>
bool copyText(const QJsonValue& value, char (&field)[size]) {
    const std::optional<QByteArray> text = PTraceText::toText(value);
    if (!text || std::size_t(text->size()) > size)
        return false;
    std::memcpy(field, text->constData(), std::size_t(text->size()));
    return true;
}

QString toDevice(const QJsonObject& object, PTraceRecords::Devices& result) {
    ToupcamDeviceV2 device{};
    if (!copyText(object.value(u"displayname"_qs), device.displayname))
        return u"displayname"_qs;
    if (!copyText(object.value(u"id"_qs), device.id))
        return u"id"_qs;
    const QJsonValue model = object.value(u"model"_qs);
    if (!model.isNull() && !model.isObject())
        return u"model"_qs;
    if (model.isObject()) {
        auto made = std::make_unique<PTraceRecords::Model>();
        const QString wrong = toModel(model.toObject(), *made);
        if (!wrong.isEmpty())
            return u"model."_qs + wrong;
        device.model = &made->model;
        result.models.push_back(std::move(made));
    }
    result.devices.push_back(device);
    return {};
}

} // namespace

QJsonObject PTraceRecords::fromHeader(const BITMAPINFOHEADER& header) {
    QJsonObject object;
    visitHeader(header, Writer{object});
    return object;
}

QString PTraceRecords::toHeader(const QJsonObject& object, BITMAPINFOHEADER& header) {
    QString wrong;
    visitHeader(header, Reader{object, wrong});
    return wrong;
}

QJsonObject PTraceRecords::fromInfo(const ToupcamFrameInfoV2& info) {
    QJsonObject object;
    visitInfo(info, Writer{object});
    return object;
}

QString PTraceRecords::toInfo(const QJsonObject& object, ToupcamFrameInfoV2& info) {
    QString wrong;
    visitInfo(info, Reader{object, wrong});
    return wrong;
}

QJsonArray PTraceRecords::fromDevices(const ToupcamDeviceV2* devices, unsigned count) {
    QJsonArray array;
    for (unsigned i = 0; i < count; ++i) {
        const ToupcamDeviceV2& device = devices[i];
        array.append(
            QJsonObject{{u"displayname"_qs,
                         PTraceText::fromText(device.displayname, sizeof device.displayname)},
                        {u"id"_qs, PTraceText::fromText(device.id, sizeof device.id)},
                        {u"model"_qs, fromModel(device.model)}});
    }
    return array;
}

QString PTraceRecords::toDevices(const QJsonArray& array, Devices& devices) {
    if (array.size() > TOUPCAM_MAX)
        return u"at most %1 cameras"_qs.arg(TOUPCAM_MAX);
    for (const auto& value : array) {
        const QString wrong = toDevice(value.toObject(), devices);
        if (!wrong.isEmpty())
            return wrong;
    }
    return {};
}
