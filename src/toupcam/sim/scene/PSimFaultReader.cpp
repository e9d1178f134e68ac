// SPDX-License-Identifier: MIT
#include <toupcam/sim/scene/PSimFaultReader.h>

#include <toupcam/sim/scene/PSimFunctionNames.h>
#include <toupcam/sim/scene/PSimJsonObject.h>

#include <algorithm>
#include <limits>

namespace {

using Action = PSimFaultSpec::Action;

constexpr double maxInt = std::numeric_limits<int>::max();
constexpr double minInt = std::numeric_limits<int>::min();

QByteArray readFunction(PSimJsonObject& object) {
    const QByteArray name = object.requiredText("function").toUtf8();
    if (!PSimFunctionNames::isKnown(name))
        object.complain("function", u"a function of the SDK such as \"Toupcam_put_Option\""_qs);
    return name;
}

void readFail(PSimJsonObject& object, PSimFaultSpec& step) {
    step.function = readFunction(object);
    if (object.has("option"))
        step.option = object.integer("option", 0U, 0, PSimJsonObject::maxUnsigned);
    step.skip = object.integer("skip", step.skip, 0, PSimJsonObject::maxUnsigned);
    step.count = object.integer("count", step.count, 0, PSimJsonObject::maxUnsigned);
    if (!object.has("result"))
        object.complain("result", u"the result that the call returns"_qs);
    step.result = object.integer("result", step.result, minInt, maxInt);
}

void readDelay(PSimJsonObject& object, PSimFaultSpec& step) {
    step.function = readFunction(object);
    step.ms = object.integer("ms", step.ms, 0, 3600000);
    step.skip = object.integer("skip", step.skip, 0, PSimJsonObject::maxUnsigned);
}

void readReportedSize(PSimJsonObject& object, PSimFaultSpec& step) {
    constexpr const char* pulls[] = {"Toupcam_PullImageV2", "Toupcam_PullStillImageV2"};
    step.function = pulls[object.choice("function", {pulls[0], pulls[1]})];
    step.width = object.integer("width", step.width, 0, maxInt);
    step.height = object.integer("height", step.height, 0, maxInt);
}

void readAnswer(PSimJsonObject& object, PSimFaultSpec& step) {
    step.option = object.integer("option", 0U, 0, PSimJsonObject::maxUnsigned);
    if (!object.has("value"))
        object.complain("value", u"the value that reading the option returns"_qs);
    step.value = object.integer("value", step.value, minInt, maxInt);
}

void readMalformed(PSimJsonObject& object, PSimFaultSpec& step) {
    step.width = object.integer("width", step.width, minInt, maxInt);
    step.height = object.integer("height", step.height, minInt, maxInt);
    step.bits = object.integer("bits", step.bits, 0, 65535);
    step.sizeImage = object.integer("sizeImage", step.sizeImage, 0, PSimJsonObject::maxUnsigned);
}

void readCameraId(PSimJsonObject& object, PSimFaultSpec& step, const PSimScene& scene) {
    step.camera = object.requiredText("camera").toUtf8();
    const bool known =
        std::any_of(scene.cameras.cbegin(), scene.cameras.cend(),
                    [&step](const PSimCameraSpec& camera) { return camera.id == step.camera; });
    if (!known)
        object.complain("camera", u"the id of a camera of this scene"_qs);
}

void readTime(PSimJsonObject& object, PSimFaultSpec& step) {
    if (object.has("afterFrames") == object.has("atMs"))
        object.complain("do", u"\"afterFrames\" or \"atMs\" beside it, not both"_qs);
    if (object.has("afterFrames"))
        step.afterFrames = object.integer("afterFrames", std::uint64_t{0}, 0, 1e15);
    else
        step.atMs = object.integer("atMs", 0U, 0, 1e9);
}

} // namespace

PSimFaultSpec PSimFaultReader::read(const QJsonValue& value, const QString& place,
                                    const PSimScene& scene) {
    constexpr Action actions[] = {Action::Unplug,  Action::Plug,        Action::Hold,
                                  Action::Release, Action::Event,       Action::PushMalformed,
                                  Action::Lose,    Action::DropTrigger, Action::Fail,
                                  Action::Delay,   Action::ReportSize,  Action::Answer};
    PSimFaultSpec step;
    PSimJsonObject object(value, place);
    step.action = actions[object.choice("do", {"unplug", "plug", "hold", "release", "event",
                                               "pushMalformed", "lose", "dropTrigger", "fail",
                                               "delay", "reportSize", "answer"})];
    if (step.action == Action::Fail) {
        readFail(object, step);
    } else if (step.action == Action::Delay) {
        readDelay(object, step);
    } else if (step.action == Action::ReportSize) {
        readReportedSize(object, step);
    } else if (step.action == Action::Answer) {
        readAnswer(object, step);
    } else {
        readCameraId(object, step, scene);
        if (step.action == Action::Lose)
            step.probability = object.number("probability", step.probability, 0, 1);
        else if (step.action == Action::DropTrigger)
            step.nth = object.integer("nth", step.nth, 1, 1e15);
        else
            readTime(object, step);
    }
    if (step.action == Action::Event)
        step.event = object.integer("event", step.event, 0, PSimJsonObject::maxUnsigned);
    else if (step.action == Action::PushMalformed)
        readMalformed(object, step);
    object.finish();
    return step;
}
