// SPDX-License-Identifier: MIT
#include <apps/pcdctl/properties/PPropertyPrint.h>

#include <apps/pcdctl/cli/PCtlOutput.h>
#include <apps/pcdctl/properties/PPropertyJson.h>

#include <PCd/property/PQuietReading.h>
#include <PCd/property/value/PPropertyText.h>

namespace {

void printLines(const QList<PDeviceProperty*>& properties) {
    for (const PDeviceProperty* property : properties) {
        if (!property->valueInner().isValid())
            continue;
        PCtlOutput::printLine(u"%1=%2"_qs.arg(
            QString::fromLatin1(property->id()),
            PPropertyText::ofValue(property->valueInner(), property->rangeInner())));
    }
}

} // namespace

PStatus printPropertyValues(const QString& cameraId, const QList<PDeviceProperty*>& properties,
                            bool json, const QJsonObject& more) {
    // One setting may have changed another since.
    const PQuietReading reading(properties);
    if (!json) {
        printLines(properties);
        return reading.status();
    }
    QJsonObject object = more;
    object.insert(u"camera"_qs, cameraId);
    object.insert(u"properties"_qs, PPropertyJson::values(properties));
    PCtlOutput::printDocument(object);
    return reading.status();
}
