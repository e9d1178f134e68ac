// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PWithCamera.h>
#include <apps/pcdctl/cli/PCtlOutput.h>
#include <apps/pcdctl/commands/PCtlCommands.h>
#include <apps/pcdctl/properties/PPropertyJson.h>
#include <apps/pcdctl/properties/PPropertyLookup.h>

#include <PCd/property/PDevicePropertyGroup.h>
#include <PCd/property/PPropertyCheck.h>
#include <PCd/property/PQuietReading.h>
#include <PCd/property/value/PPropertyText.h>

namespace {

using Properties = QList<PDeviceProperty*>;

/// Properties under a title, in the displayed order.
struct Section {
    QString id; ///< of a group; empty for what belongs to none
    QString title;
    Properties members;
};

Properties shownMembers(const Properties& members, const Properties& shown) {
    Properties result;
    for (PDeviceProperty* property : members) {
        if (shown.contains(property))
            result.append(property);
    }
    return result;
}

/// The groups of the camera; groups without a member only if all properties are shown.
QList<Section> shownGroups(PDevice& device, const Properties& shown) {
    const bool isAll = shown.size() == device.supportProperties().size();
    QList<Section> sections;
    for (const PDevicePropertyGroup* group : device.supportPropertyGroups()) {
        const Properties members = shownMembers(group->properties(), shown);
        if (isAll || !members.isEmpty())
            sections.append({group->id(), group->title(), members});
    }
    return sections;
}

const Section* findSection(const QList<Section>& sections, PDeviceProperty* property) {
    for (const Section& section : sections) {
        if (section.members.contains(property))
            return &section;
    }
    return nullptr;
}

QJsonObject toJson(const Section& section) {
    QJsonArray members;
    for (const PDeviceProperty* property : section.members)
        members.append(QString::fromLatin1(property->id()));
    return {{u"id"_qs, section.id}, {u"title"_qs, section.title}, {u"members"_qs, members}};
}

void printJson(const QString& cameraId, const Properties& shown, const QList<Section>& groups) {
    QJsonArray properties;
    for (PDeviceProperty* property : shown) {
        QJsonObject object = PPropertyJson::description(*property);
        if (const Section* const group = findSection(groups, property))
            object.insert(u"group"_qs, group->id);
        properties.append(object);
    }
    QJsonArray sections;
    for (const Section& group : groups)
        sections.append(toJson(group));
    PCtlOutput::printDocument(
        {{u"camera"_qs, cameraId}, {u"properties"_qs, properties}, {u"groups"_qs, sections}});
}

/// "Contrast = 12 µs", or the parts of it that exist.
QString toHeading(const PDeviceProperty& property) {
    const QString value = PPropertyText::ofValue(property.valueInner(), property.rangeInner());
    const QString text = value.isEmpty() ? property.title() : property.title() + u" = "_qs + value;
    return (text + u' ' + PPropertyJson::unitName(property)).trimmed();
}

QString toDetails(const PDeviceProperty& property) {
    QStringList details{PPropertyJson::typeName(property)};
    if (property.type() != PCD::DevicePropertyType::Action)
        details.append(PPropertyCheck::expectation(property));
    if (property.defaultValue().isValid()) {
        details.append(u"default "_qs +
                       PPropertyText::ofValue(property.defaultValue(), property.rangeInner()));
    }
    if (!property.isSerializable())
        details.append(u"not in profiles"_qs);
    return details.join(u"; "_qs);
}

void printText(const Section& section) {
    PCtlOutput::printLine(section.title);
    for (const PDeviceProperty* property : section.members) {
        PCtlOutput::printLine(
            u"  %1 %2  (%3)"_qs.arg(QString::fromLatin1(property->id()).leftJustified(15),
                                    toHeading(*property), toDetails(*property)));
        if (!property->description().isEmpty())
            PCtlOutput::printLine(u"  %1 %2"_qs.arg(QString(15, u' '), property->description()));
    }
}

void printText(const Properties& shown, const QList<Section>& groups) {
    Section others{QString(), u"Other"_qs, {}};
    for (PDeviceProperty* property : shown) {
        if (findSection(groups, property) == nullptr)
            others.members.append(property);
    }
    for (const Section& group : groups)
        printText(group);
    if (!others.members.isEmpty())
        printText(others);
}

PCtlOutcome printProperties(PCameraSession& session, const PCtlOptions& options) {
    PDevice& device = *session.device();
    PCtlOutcome outcome;
    const Properties named = PPropertyLookup::findAll(device, options.words, outcome);
    if (!outcome.isDone())
        return outcome;
    const Properties all = device.supportProperties();
    const Properties shown = options.words.isEmpty() ? all : shownMembers(all, named);
    const PQuietReading reading(shown);
    const QList<Section> groups = shownGroups(device, shown);
    if (options.json)
        printJson(session.cameraId(), shown, groups);
    else
        printText(shown, groups);
    return session.readOutcome(reading.status());
}

} // namespace

PCtlOutcome runPropsCommand(PCtlHost& host, const PCtlOptions& options) {
    return withCamera(host, options,
                      [&](PCameraSession& session) { return printProperties(session, options); });
}
