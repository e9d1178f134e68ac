// SPDX-License-Identifier: MIT
#include <apps/common/reading/OmeXml.h>

#include <apps/common/reading/XmlLint.h>

#include <QXmlStreamReader>

#include <cstdio>

namespace {

/// True if these names are in the given order, in which names may be left out or repeated.
bool isOrdered(const QStringList& names, const QStringList& order) {
    qsizetype last = 0;
    for (const QString& name : names) {
        const qsizetype position = order.indexOf(name);
        if (position < last)
            return false;
        last = position;
    }
    return true;
}

} // namespace

OmeXml::OmeXml(const QByteArray& xml)
    : m_xml(xml) {
    QXmlStreamReader reader(xml);
    QList<qsizetype> open;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            Element element;
            element.name = reader.name().toString();
            element.parent = open.isEmpty() ? QString() : m_elements.at(open.last()).name;
            for (const QXmlStreamAttribute& attribute : reader.attributes())
                element.attributes.insert(attribute.name().toString(),
                                          attribute.value().toString());
            open.append(m_elements.size());
            m_elements.append(element);
            break;
        }
        case QXmlStreamReader::Characters:
            if (!open.isEmpty())
                m_elements[open.last()].text += reader.text();
            break;
        case QXmlStreamReader::EndElement:
            open.removeLast();
            break;
        default:
            break;
        }
    }
    m_error = reader.errorString();
}

QList<OmeXml::Element> OmeXml::elements(const char* name) const {
    QList<Element> found;
    for (const Element& element : m_elements) {
        if (element.name == QLatin1String(name))
            found.append(element);
    }
    return found;
}

QString OmeXml::attribute(const char* element, const char* name) const {
    return elements(element).value(0).attributes.value(QLatin1String(name));
}

QString OmeXml::text(const char* element) const {
    return elements(element).value(0).text;
}

QString OmeXml::note(const QString& key) const {
    for (const Element& element : elements("M")) {
        if (element.attributes.value(u"K"_qs) == key)
            return element.text;
    }
    return {};
}

QString OmeXml::complaints() const {
    if (!m_error.isEmpty())
        return m_error;
    const QString schema = qEnvironmentVariable("PCD_OME_SCHEMA");
    const QString wrong = structureComplaints();
    if (!schema.isEmpty())
        return wrong + xmlLintComplaints(m_xml, schema);
    std::puts("PCD_OME_SCHEMA names no schema: only the structure is looked at");
    return wrong;
}

QStringList OmeXml::childNames(const char* parent) const {
    QStringList names;
    for (const Element& element : m_elements) {
        if (element.parent == QLatin1String(parent))
            names.append(element.name);
    }
    return names;
}

QString OmeXml::structureComplaints() const {
    QStringList wrong;
    const auto expectOrder = [&](const char* parent, const QString& order) {
        if (!isOrdered(childNames(parent), order.split(u' ')))
            wrong.append(u"children of %1 out of order"_qs.arg(QLatin1String(parent)));
    };
    expectOrder("OME", u"Instrument Image StructuredAnnotations"_qs);
    expectOrder("Image", u"AcquisitionDate Description InstrumentRef "
                         "ImagingEnvironment Pixels AnnotationRef"_qs);
    expectOrder("Pixels", u"Channel TiffData MetadataOnly Plane"_qs);
    for (const char* name :
         {"ID", "DimensionOrder", "Type", "SizeX", "SizeY", "SizeZ", "SizeC", "SizeT"}) {
        if (attribute("Pixels", name).isEmpty())
            wrong.append(u"Pixels lacks "_qs + QLatin1String(name));
    }
    const auto expectSame = [&](const char* reference, const char* target) {
        if (attribute(reference, "ID") != attribute(target, "ID"))
            wrong.append(u"%1 refers to nothing"_qs.arg(QLatin1String(reference)));
    };
    expectSame("InstrumentRef", "Instrument");
    expectSame("DetectorSettings", "Detector");
    expectSame("AnnotationRef", "MapAnnotation");
    return wrong.join(u'\n');
}
