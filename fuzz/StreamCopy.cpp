// SPDX-License-Identifier: MIT
#include <StreamCopy.h>

#include <FuzzSupport.h>

#include <PCore/state/PBinaryReader.h>
#include <PCore/state/PBinaryWriter.h>
#include <PCore/state/PJsonReader.h>
#include <PCore/state/PJsonWriter.h>

namespace {

bool isNull(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::QString:
        return value.toString().isNull();
    case QMetaType::QByteArray:
        return value.toByteArray().isNull();
    default:
        return false;
    }
}

bool areSame(const QVariant& a, const QVariant& b) {
    return a.isValid() && a.metaType() == b.metaType() && a == b && isNull(a) == isNull(b);
}

template <typename Reader, typename Writer>
void requireKeptIn(PAbstractReader& document) {
    Writer writer;
    StreamCopy::copy(document, writer);
    Reader again;
    Fuzz::require(again.setDocument(writer.document()).isOk(), "what is written can be read");
    StreamCopy::requireSame(document, again);
}

} // namespace

void StreamCopy::copy(PAbstractReader& from, PAbstractWriter& to) {
    for (const QString& name : from.valueNames())
        Fuzz::require(to.writeValue(name, from.readValue(name)), "what was read can be written");
    for (const QString& name : from.objectNames()) {
        Fuzz::require(from.beginObject(name), "an object that is listed can be entered");
        to.beginObject(name);
        copy(from, to);
        to.endObject();
        from.endObject();
    }
}

void StreamCopy::requireSame(PAbstractReader& a, PAbstractReader& b) {
    Fuzz::require(a.valueNames() == b.valueNames(), "the values have the same names");
    Fuzz::require(a.objectNames() == b.objectNames(), "the objects have the same names");
    for (const QString& name : a.valueNames()) {
        Fuzz::require(!a.position(name).isEmpty(), "a value has a position");
        Fuzz::require(areSame(a.readValue(name), b.readValue(name)), "a value is the same");
    }
    for (const QString& name : a.objectNames()) {
        Fuzz::require(a.beginObject(name) && b.beginObject(name), "both have the object");
        requireSame(a, b);
        a.endObject();
        b.endObject();
    }
}

void StreamCopy::requireKept(PAbstractReader& document) {
    requireKeptIn<PJsonReader, PJsonWriter>(document);
    requireKeptIn<PBinaryReader, PBinaryWriter>(document);
}
