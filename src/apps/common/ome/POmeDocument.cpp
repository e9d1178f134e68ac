// SPDX-License-Identifier: MIT
#include <apps/common/ome/POmeDocument.h>

#include <QXmlStreamWriter>

#include <algorithm>

namespace {

/// Removes the characters that XML 1.0 cannot represent (section 2.2, "Characters").
QString legal(QString text) {
    text.removeIf([](QChar c) {
        const bool isControl = c < u' ' && c != u'\t' && c != u'\n' && c != u'\r';
        return isControl || c == QChar(0xfffe) || c == QChar(0xffff);
    });
    return text;
}

/// The channels of a colour picture: red, green, blue and alpha in a signed number, as the schema
/// has it (type Color).
struct ChannelColour {
    const char* name;
    int value;
};
constexpr ChannelColour channelColours[]{
    {"Red", int(0xff0000ff)}, {"Green", 0x00ff00ff}, {"Blue", 0x0000ffff}};

/// Writes the elements in the order of the schema.
class Writer {
public:
    Writer(const POmeDocument& document, bool isFinished)
        : m_document(document)
        , m_isFinished(isFinished)
        , m_xml(&m_text) {}

    QByteArray write() {
        m_xml.writeStartDocument();
        m_xml.writeStartElement(u"OME"_qs);
        m_xml.writeDefaultNamespace(u"http://www.openmicroscopy.org/Schemas/OME/2016-06"_qs);
        attribute("Creator", m_document.creator);
        writeInstrument();
        writeImage();
        writeNotes();
        m_xml.writeEndDocument();
        return m_text;
    }

private:
    void start(const char* name) { m_xml.writeStartElement(QLatin1String(name)); }
    void end() { m_xml.writeEndElement(); }
    void attribute(const char* name, const QString& value) {
        m_xml.writeAttribute(QLatin1String(name), legal(value));
    }
    void attribute(const char* name, std::size_t value) { attribute(name, QString::number(value)); }
    void attribute(const char* name, double value) {
        attribute(name, QString::number(value, 'g', 12));
    }
    void attribute(const char* name, const std::optional<double>& value, const char* unitName,
                   const QString& unit) {
        if (!value)
            return;
        attribute(name, *value);
        attribute(unitName, unit);
    }
    void text(const char* name, const QString& value) {
        m_xml.writeTextElement(QLatin1String(name), legal(value));
    }
    void reference(const char* name, const QString& id) {
        start(name);
        attribute("ID", id);
        end();
    }

    void writeInstrument() {
        start("Instrument");
        attribute("ID", u"Instrument:0"_qs);
        start("Detector");
        attribute("Model", m_document.camera.model);
        if (!m_document.camera.serial.isEmpty())
            attribute("SerialNumber", m_document.camera.serial);
        attribute("ID", u"Detector:0"_qs);
        end();
        end();
    }

    void writeImage() {
        start("Image");
        attribute("ID", u"Image:0"_qs);
        attribute("Name", m_document.name);
        text("AcquisitionDate", m_document.taken.toUTC().toString(Qt::ISODateWithMs));
        if (m_document.camera.simulated)
            text("Description", u"Simulated camera: these pictures show no real specimen."_qs);
        reference("InstrumentRef", u"Instrument:0"_qs);
        writeTemperature();
        writePixels();
        reference("AnnotationRef", u"Annotation:0"_qs);
        end();
    }

    void writeTemperature() {
        if (!m_document.sensorTemperature)
            return;
        start("ImagingEnvironment");
        attribute("Temperature", m_document.sensorTemperature, "TemperatureUnit", u"°C"_qs);
        end();
    }

    void writePixels() {
        start("Pixels");
        attribute("ID", u"Pixels:0"_qs);
        attribute("DimensionOrder", u"XYCZT"_qs);
        attribute("Type", u"uint8"_qs);
        attribute("SignificantBits", std::size_t(8));
        attribute("Interleaved", samplesOfPlane() > 1 ? u"true"_qs : u"false"_qs);
        attribute("BigEndian", u"false"_qs);
        writeSizes();
        for (int channel = 0; channel < planesOfPicture(); ++channel)
            writeChannel(channel);
        if (m_document.storage == POmeDocument::Storage::Tiff)
            writeTiffData();
        else
            m_xml.writeEmptyElement(u"MetadataOnly"_qs);
        const std::size_t described = m_isFinished ? m_document.planes.size() : 1;
        for (std::size_t i = 0; i < std::min(described, m_document.planes.size()); ++i) {
            for (int channel = 0; channel < planesOfPicture(); ++channel)
                writePlane(i, channel, m_document.planes[i]);
        }
        end();
    }

    void writeSizes() {
        attribute("SizeX", std::size_t(m_document.width));
        attribute("SizeY", std::size_t(m_document.height));
        attribute("SizeZ", std::size_t(1));
        attribute("SizeC", std::size_t(m_document.samples));
        if (m_isFinished)
            attribute("SizeT", m_document.planes.size());
        else
            attribute("SizeT", QString::fromLatin1(POmeDocument::countText(1)));
        attribute("PhysicalSizeX", m_document.pixelSizeUm, "PhysicalSizeXUnit", u"µm"_qs);
        attribute("PhysicalSizeY", m_document.pixelSizeUm, "PhysicalSizeYUnit", u"µm"_qs);
    }

    int planesOfPicture() const {
        return m_document.storage == POmeDocument::Storage::Tiff ? 1 : m_document.samples;
    }
    int samplesOfPlane() const { return m_document.samples / planesOfPicture(); }

    void writeChannel(int channel) {
        start("Channel");
        attribute("ID", u"Channel:0:%1"_qs.arg(channel));
        attribute("SamplesPerPixel", std::size_t(samplesOfPlane()));
        if (planesOfPicture() > 1) {
            attribute("Name", QString::fromLatin1(channelColours[channel].name));
            attribute("Color", QString::number(channelColours[channel].value));
        }
        start("DetectorSettings");
        attribute("ID", u"Detector:0"_qs);
        if (m_document.exposure.gain)
            attribute("Gain", *m_document.exposure.gain);
        writeBinning();
        end();
        end();
    }

    void writeBinning() {
        const QString& binning = m_document.exposure.binning;
        if (binning.isEmpty())
            return;
        const QStringList known{u"1x1"_qs, u"2x2"_qs, u"4x4"_qs, u"8x8"_qs};
        attribute("Binning", known.contains(binning) ? binning : u"Other"_qs);
    }

    void writeTiffData() {
        // Without attributes it refers to all directories of the file, in their order.
        if (!m_isFinished)
            m_xml.writeEmptyElement(u"TiffData"_qs);
        for (std::size_t i = 0; m_isFinished && i < m_document.planes.size(); ++i) {
            start("TiffData");
            attribute("IFD", i);
            attribute("FirstT", i);
            attribute("PlaneCount", std::size_t(1));
            end();
        }
    }

    void writePlane(std::size_t index, int channel, const POmePlane& plane) {
        start("Plane");
        attribute("TheZ", std::size_t(0));
        attribute("TheT", index);
        attribute("TheC", std::size_t(channel));
        attribute("DeltaT", std::optional(plane.seconds), "DeltaTUnit", u"s"_qs);
        attribute("ExposureTime", plane.exposureMs, "ExposureTimeUnit", u"ms"_qs);
        end();
    }

    void writeNotes() {
        start("StructuredAnnotations");
        start("MapAnnotation");
        attribute("ID", u"Annotation:0"_qs);
        start("Value");
        for (const auto& [key, value] : m_document.notes) {
            start("M");
            attribute("K", key);
            m_xml.writeCharacters(legal(value));
            end();
        }
        end();
        end();
        end();
    }

    const POmeDocument& m_document;
    const bool m_isFinished;
    QByteArray m_text;
    QXmlStreamWriter m_xml;
};

} // namespace

QByteArray POmeDocument::toXml() const {
    return Writer(*this, true).write();
}

POmeDocument::Unfinished POmeDocument::toUnfinishedXml() const {
    const QByteArray xml = Writer(*this, false).write();
    const QByteArray before = "SizeT=\"";
    // A quotation mark within an attribute is written as an entity, so this is the attribute.
    return {xml, xml.indexOf(before + countText(1) + '"') + before.size()};
}

QByteArray POmeDocument::countText(std::size_t count) {
    return QByteArray::number(qulonglong(count)).rightJustified(countDigits, '0');
}
