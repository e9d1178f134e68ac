// SPDX-License-Identifier: MIT
// Saving and restoring a device: {model, serial, mode, properties: {id: …}}.
#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PReadWatch.h>

#include <PCore/state/PAbstractReader.h>
#include <PCore/state/PAbstractWriter.h>

#include <algorithm>

namespace {

bool readMode(PDevice* device, const PAbstractReader* reader) {
    const QVariant wanted = reader->readValue(u"mode"_qs);
    if (!wanted.isValid())
        return true; // saved from a device without modes
    const QList<PDeviceMode> modes = device->getSupportModes();
    const auto mode = std::find_if(modes.begin(), modes.end(), [&](const PDeviceMode& m) {
        return QString::fromLatin1(m.id) == wanted.toString();
    });
    return mode != modes.end() && device->setMode(*mode).isOk();
}

bool readProperty(PDevice* device, PAbstractReader* reader, const QString& id) {
    PDeviceProperty* const property = device->getProperty(id.toLatin1());
    if (property == nullptr)
        return false;
    // Actions are not saved; older files hold an empty object for each.
    if (property->type() == PCD::DevicePropertyType::Action)
        return true;
    if (!reader->beginObject(id))
        return false;
    const bool done = property->readStreamThis(reader);
    reader->endObject();
    return done;
}

} // namespace

bool PDevice::writeStreamThis(PAbstractWriter* writer, const QString& name) {
    writer->beginObject(name);
    bool done = writer->writeValue(u"model"_qs, model());
    done = writer->writeValue(u"serial"_qs, serial()) && done;
    const PReadWatch watch;
    const PDeviceMode mode = getCurrentMode();
    if (watch.hasFailed())
        done = false;
    else if (!mode.id.isEmpty())
        done = writer->writeValue(u"mode"_qs, QString::fromLatin1(mode.id)) && done;
    writer->beginObject(u"properties"_qs);
    for (PDeviceProperty* property : supportProperties())
        done = property->writeStreamThis(writer, QString::fromLatin1(property->id())) && done;
    writer->endObject();
    writer->endObject();
    return done;
}

bool PDevice::readStreamThis(PAbstractReader* reader) {
    supportProperties();
    bool done = readMode(this, reader);
    if (!reader->beginObject(u"properties"_qs))
        return false;
    const QStringList ids = reader->objectNames();
    for (const QString& id : ids)
        done = readProperty(this, reader, id) && done;
    reader->endObject();
    return done;
}
