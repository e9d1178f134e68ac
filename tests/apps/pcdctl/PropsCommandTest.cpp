// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CameraCommandTest.h>

#include <support/QtPrinters.h>

#include <QJsonArray>

namespace {

class PropsCommand : public CameraCommandTest {};

/// A property in one line: "id|title|type|range|default|serializable|group".
QString toLine(const QJsonObject& property) {
    const auto compact = [&](const char* key) {
        const QJsonValue value = property.value(QLatin1String(key));
        return value.isUndefined() ? u"-"_qs : value.toVariant().toString();
    };
    const QJsonObject range = property.value(u"range"_qs).toObject();
    const QString limits = range.isEmpty()
                               ? u"-"_qs
                               : u"%1..%2/%3"_qs.arg(QString::number(range[u"minimum"_qs].toInt()),
                                                     QString::number(range[u"maximum"_qs].toInt()),
                                                     QString::number(range[u"step"_qs].toInt()));
    return QStringList{compact("id"),      compact("title"),        compact("typeCode"), limits,
                       compact("default"), compact("serializable"), compact("group")}
        .join(u'|');
}

TEST_F(PropsCommand, lists_the_whole_catalogue_in_its_order) {
    const CtlResult result = run({u"props"_qs, u"--json"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    QStringList lines;
    for (const QJsonValue& property : result.json.value(u"properties"_qs).toArray())
        lines.append(toLine(property.toObject()));
    const QStringList expected{
        u"extexposure||1|-|-|true|exposure"_qs,
        u"autoexponeable|Autoexposure|9|-|true|false|-"_qs,
        u"autoexpotarget|Autotarget|5|10..230/1|-|false|-"_qs,
        u"autoexpottime|Time|6|50..15000000/1|120|false|-"_qs,
        u"autoexpogain|Gain|5|100..500/1|100|false|-"_qs,
        u"tint|Tint|5|200..2500/1|6503|true|wb"_qs,
        u"temp|Temp|5|2000..15000/1|1000|true|wb"_qs,
        u"awbonce|Auto whitebalance|11|-|-|true|wb"_qs,
        u"contrast|Contrast|5|-100..100/1|0|true|color"_qs,
        u"hue|Hue|5|-180..180/1|0|true|color"_qs,
        u"saturation|Saturation|5|0..255/1|128|true|color"_qs,
        u"brightness|Brightness|5|-64..64/1|0|true|color"_qs,
        u"gamma|Gamma|5|20..180/1|100|true|color"_qs,
        u"negative|Negative|9|-|-|true|color"_qs,
        u"chrome|Chrome|9|-|-|true|color"_qs,
        u"vflip|Vertical flip|9|-|-|true|frame"_qs,
        u"hflip|Horizontal flip|9|-|-|true|frame"_qs,
        u"speed|Speed|5|0..3/1|3|true|speed"_qs,
        u"roi|ROI|19|-|-|true|frame"_qs,
        u"backlight||1|0..0/0|-|true|backlight"_qs,
        u"colormatrix|Color matrix|10|-|-|true|color"_qs,
        u"wbgain|WB Gain|10|-|-|true|-"_qs,
        u"binning|Binning|10|-|-|true|binning"_qs,
        u"rotate|Rotate|10|-|-|true|frame"_qs,
    };
    EXPECT_EQ(lines.join(u'\n'), expected.join(u'\n'));
}

TEST_F(PropsCommand, lists_the_groups_in_their_order_also_those_without_members) {
    const CtlResult result = run({u"props"_qs, u"--json"_qs});
    QStringList lines;
    for (const QJsonValue& group : result.json.value(u"groups"_qs).toArray()) {
        lines.append(u"%1|%2|%3"_qs.arg(group[u"id"_qs].toString(), group[u"title"_qs].toString(),
                                        idsIn(group[u"members"_qs]).join(u' ')));
    }
    const QStringList expected{
        u"exposure|Exposure settings|extexposure"_qs,
        u"wb|White balance|tint temp awbonce"_qs,
        u"color|Color|contrast hue saturation brightness gamma chrome negative colormatrix"_qs,
        u"binning|Binning|binning"_qs,
        u"frame|Frame|rotate vflip hflip roi"_qs,
        u"speed|Speed|speed"_qs,
        u"backlight|Backlight compensation|backlight"_qs,
        u"cooling|Cooling|"_qs,
    };
    EXPECT_EQ(lines.join(u'\n'), expected.join(u'\n'));
}

QJsonObject onlyProperty(const CtlResult& result) {
    return result.json.value(u"properties"_qs).toArray().at(0).toObject();
}

TEST_F(PropsCommand, shows_everything_about_a_choice) {
    const QJsonObject rotate = onlyProperty(run({u"props"_qs, u"rotate"_qs, u"--json"_qs}));
    EXPECT_EQ(rotate.value(u"type"_qs), u"choice"_qs);
    EXPECT_EQ(rotate.value(u"value"_qs), u"0"_qs);
    const QJsonArray choices = rotate.value(u"choices"_qs).toArray();
    ASSERT_EQ(choices.size(), 4);
    EXPECT_EQ(
        choices.at(1).toObject(),
        QJsonObject({{u"name"_qs, u"90"_qs}, {u"title"_qs, u"90°"_qs}, {u"data"_qs, u"90"_qs}}));
}

TEST_F(PropsCommand, shows_everything_about_a_region) {
    const QJsonObject roi = onlyProperty(run({u"props"_qs, u"roi"_qs, u"--json"_qs}));
    const QJsonObject whole{{u"x"_qs, 0}, {u"y"_qs, 0}, {u"width"_qs, 320}, {u"height"_qs, 240}};
    EXPECT_EQ(roi.value(u"value"_qs), whole);
    EXPECT_EQ(roi.value(u"area"_qs), QJsonObject({{u"bounds"_qs, whole},
                                                  {u"minimumWidth"_qs, 4},
                                                  {u"minimumHeight"_qs, 4},
                                                  {u"widthStep"_qs, 4},
                                                  {u"heightStep"_qs, 4},
                                                  {u"offsetStep"_qs, 0}}));
}

TEST_F(PropsCommand, shows_unit_and_description_if_there_are_any) {
    const QJsonObject time = onlyProperty(run({u"props"_qs, u"autoexpottime"_qs, u"--json"_qs}));
    EXPECT_EQ(time.value(u"unit"_qs), u"µs"_qs);
    EXPECT_FALSE(time.contains(u"description"_qs));
    const QJsonObject speed = onlyProperty(run({u"props"_qs, u"speed"_qs, u"--json"_qs}));
    EXPECT_EQ(speed.value(u"description"_qs),
              u"If the live video is not displayed, reduce the speed."_qs);
    EXPECT_FALSE(speed.contains(u"unit"_qs));
}

TEST_F(PropsCommand, shows_properties_under_the_titles_of_their_groups) {
    const CtlResult result = run({u"props"_qs, u"gamma"_qs, u"awbonce"_qs, u"wbgain"_qs});
    EXPECT_EQ(QString::fromUtf8(result.output),
              u"White balance\n"
              "  awbonce         Auto whitebalance  (action)\n"
              "Color\n"
              "  gamma           Gamma = 100  (integer; a whole number from 20 to 180; default "
              "100)\n"
              "Other\n"
              "  wbgain          WB Gain = Enable  (choice; one of \"Disable\", \"Enable\")\n"_qs);
}

TEST_F(PropsCommand, shows_what_was_set_before) {
    const CtlResult result =
        run({u"props"_qs, u"gamma"_qs, u"--json"_qs, u"--set"_qs, u"gamma=50"_qs});
    EXPECT_EQ(onlyProperty(result).value(u"value"_qs), 50);
}

TEST_F(PropsCommand, follows_the_mode_with_the_range_of_the_region) {
    const CtlResult result = run({u"props"_qs, u"roi"_qs, u"--mode=1"_qs});
    EXPECT_TRUE(result.output.contains("ROI = 0,0,160,120 ")) << result.output.toStdString();
    EXPECT_TRUE(result.output.contains("inside 0,0,160,120,")) << result.output.toStdString();
}

TEST_F(PropsCommand, of_an_unknown_id_is_wrong_usage) {
    const CtlResult result = run({u"props"_qs, u"gama"_qs});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errors.contains(
        u"the camera has no property \"gama\": did you mean gamma? expected one of extexposure, "_qs))
        << result.errors.toStdString();
}

TEST_F(PropsCommand, shows_no_value_that_was_not_read_and_fails) {
    scene.addFault(failing(u"Toupcam_get_Gamma"_qs)).addFault(failing(u"Toupcam_get_VFlip"_qs));
    const CtlResult result = run({u"props"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.output.contains("  gamma           Gamma  (integer;"))
        << result.output.toStdString();
    EXPECT_TRUE(result.output.contains("  hue             Hue = 0 "));
    EXPECT_EQ(result.errors,
              u"pcdctl: camera Small-S0001: the camera did not report gamma, vflip\n"_qs);
}

TEST_F(PropsCommand, shows_no_range_that_was_not_read) {
    scene.addFaults(silence());
    const QStringList command{u"props"_qs, u"roi"_qs, u"hue"_qs};
    const CtlResult inWords = run(command);
    EXPECT_EQ(inWords.exitCode, 1);
    EXPECT_TRUE(inWords.output.contains("Hue  (integer; a whole number from -180 to 180;"))
        << inWords.output.toStdString();
    EXPECT_TRUE(inWords.output.contains("ROI  (area; a value, but the camera does not report it)"))
        << inWords.output.toStdString();
    for (const QJsonValue& property :
         run(command + QStringList{u"--json"_qs}).json.value(u"properties"_qs).toArray()) {
        const QJsonObject object = property.toObject();
        EXPECT_EQ(object.contains(u"range"_qs), object.value(u"id"_qs) == u"hue"_qs);
        EXPECT_FALSE(object.contains(u"area"_qs));
    }
}

} // namespace
