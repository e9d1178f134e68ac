// SPDX-License-Identifier: MIT
#include <PCd/profile/PDeviceProfileFile.h>

#include <PCd/device/PDevice.h>
#include <PCd/profile/PDeviceProfileParser.h>
#include <PCd/property/PQuietReading.h>
#include <PCd/property/PReadWatch.h>

#include <PCore/file/PWholeFile.h>
#include <PCore/state/PJsonReader.h>
#include <PCore/state/PJsonWriter.h>

#include <QFileInfo>

namespace {

PStatus saveFailure(const QString& path, const QString& reason) {
    return PStatus::failure(PDeviceProfileFile::tr("cannot save \"%1\": %2").arg(path, reason));
}

PStatus readFailure(const QString& path, const QString& reason) {
    return PStatus::failure(PDeviceProfileFile::tr("cannot read \"%1\": %2").arg(path, reason));
}

PStatus replaceFile(const QString& path, const QByteArray& bytes) {
    // Saving would replace a device or pipe by a file of that name.
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return saveFailure(path, PDeviceProfileFile::tr("it is not a file"));
    const PStatus status = PWholeFile::replace(path, bytes);
    return status.isOk() ? status : saveFailure(path, status.reason());
}

QString tooLarge() {
    return PDeviceProfileFile::tr("it is larger than %1 bytes, too large for a profile")
        .arg(PDeviceProfileFile::largestSize);
}

/// Fails before anything is read: a device or pipe may have no end, or block for ever.
PStatus readBytes(const QString& path, QByteArray& bytes) {
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return readFailure(path, PDeviceProfileFile::tr("it is not a file"));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return readFailure(path, file.errorString());
    if (file.size() > PDeviceProfileFile::largestSize)
        return readFailure(path, tooLarge());
    bytes = file.read(PDeviceProfileFile::largestSize + 1);
    if (bytes.size() > PDeviceProfileFile::largestSize)
        return readFailure(path, tooLarge());
    return file.error() == QFile::NoError ? PStatus(PStatus::Ok)
                                          : readFailure(path, file.errorString());
}

PStatus parse(const QByteArray& bytes, PDeviceProfile& profile) {
    PJsonReader reader;
    const PStatus status = reader.setDocument(bytes);
    return status.isOk() ? PDeviceProfileParser::parse(reader, profile) : status;
}

} // namespace

QList<PDeviceProperty*> PDeviceProfileFile::savedProperties(PDevice& device) {
    QList<PDeviceProperty*> saved = device.supportProperties();
    saved.removeIf([](const PDeviceProperty* property) { return !property->isSerializable(); });
    return saved;
}

PStatus PDeviceProfileFile::save(PDevice& device, const QString& path) {
    const bool hadModes = !device.getSupportModes().isEmpty();
    const PQuietReading reading(savedProperties(device));
    // The values of a driver that reports no failures are zeros if its camera was unplugged.
    if (!device.isAnswering() || (hadModes && device.getSupportModes().isEmpty()))
        return saveFailure(path, tr("the camera no longer answers"));
    const PStatus read = reading.status();
    if (!read.isOk())
        return saveFailure(path, read.reason());
    const PReadWatch watch;
    PJsonWriter writer;
    writer.writeValue(PDeviceProfileParser::formatKey(), PDeviceProfileParser::formatName());
    writer.writeValue(PDeviceProfileParser::versionKey(), PDeviceProfileParser::version);
    if (!device.writeStreamThis(&writer, PDeviceProfileParser::cameraKey()))
        return saveFailure(path, watch.hasFailed()
                                     ? tr("the camera did not report its mode")
                                     : tr("the camera has a value that cannot be written"));
    return replaceFile(path, writer.document());
}

PStatus PDeviceProfileFile::read(const QString& path, PDeviceProfile& profile) {
    QByteArray bytes;
    const PStatus status = readBytes(path, bytes);
    if (!status.isOk())
        return status;
    PDeviceProfile read;
    const PStatus parsed = parse(bytes, read);
    if (!parsed.isOk())
        return PStatus::failure(u"\"%1\": %2"_qs.arg(path, parsed.reason()));
    profile = read;
    profile.path = path;
    return PStatus::Ok;
}
