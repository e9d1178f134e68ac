// SPDX-License-Identifier: MIT
// A profile, from its text to the values that are sent to a device.
#include <FuzzSupport.h>

#include <PCd/profile/ProfileDevice.h>

#include <PCd/profile/PDeviceProfileParser.h>
#include <PCd/profile/PDeviceProfilePlan.h>
#include <PCd/property/PPropertyCheck.h>

#include <PCore/state/PJsonReader.h>
#include <PCore/state/PJsonWriter.h>

namespace {

PStatus parse(const QByteArray& text, PDeviceProfile& profile) {
    PJsonReader reader;
    const PStatus status = reader.setDocument(text);
    return status.isOk() ? PDeviceProfileParser::parse(reader, profile) : status;
}

/// The text that a profile of the device has now, without the frame of the document.
void requireReadable(PDevice& device) {
    PJsonWriter writer;
    writer.writeValue(PDeviceProfileParser::formatKey(), PDeviceProfileParser::formatName());
    writer.writeValue(PDeviceProfileParser::versionKey(), PDeviceProfileParser::version);
    Fuzz::require(device.writeStreamThis(&writer, PDeviceProfileParser::cameraKey()),
                  "the device can be saved");
    PDeviceProfile saved;
    Fuzz::require(parse(writer.document(), saved).isOk(), "what is saved can be read");
}

void requireInRange(PDevice& device) {
    for (const PDeviceProperty* property : device.supportProperties()) {
        Fuzz::require(property->type() == PCD::DevicePropertyType::Action ||
                          PPropertyCheck::check(*property, property->valueInner()).isOk(),
                      "what was sent is within the range");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    PDeviceProfile profile;
    if (!parse(Fuzz::toBytes(data, size), profile).isOk())
        return 0;
    ProfileDevice camera;
    const bool isAsItIs = size % 2 == 0;
    PDeviceProfilePlan plan(camera.device, isAsItIs ? PDeviceProfilePlan::Mode::AsItIs
                                                    : PDeviceProfilePlan::Mode::OfProfile);
    const bool isGood = plan.make(profile).isOk();
    Fuzz::require(camera.sent.isEmpty(), "a plan sends nothing");
    plan.apply();
    Fuzz::require(isGood || camera.sent.isEmpty(), "nothing of a damaged profile is sent");
    Fuzz::require(!camera.sent.contains(u"whiten"_qs), "a profile runs no action");
    requireInRange(camera.device);
    requireReadable(camera.device);
    return 0;
}
