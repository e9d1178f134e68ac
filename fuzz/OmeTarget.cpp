// SPDX-License-Identifier: MIT
// The OME-XML of a recording, with texts that the camera or the user chose. The input is texts,
// each ended by a zero byte.
#include <FuzzSupport.h>

#include <apps/common/ome/POmeDocument.h>

#include <QXmlStreamReader>

namespace {

POmeDocument makeDocument(const QList<QByteArray>& texts) {
    const auto text = [&](qsizetype index) { return QString::fromUtf8(texts.value(index)); };
    POmeDocument document;
    document.creator = text(0);
    document.name = text(1);
    document.camera = {text(2), text(3), text(4), texts.size() % 2 == 0};
    document.width = 4;
    document.height = 3;
    document.exposure.binning = text(5);
    for (qsizetype i = 6; i < texts.size(); i += 2)
        document.notes.append({text(i), text(i + 1)});
    document.planes.resize(2);
    return document;
}

/// Reads the document as other programs do, and returns the number of its notes.
qsizetype countNotes(const QByteArray& xml) {
    QXmlStreamReader reader(xml);
    qsizetype notes = 0;
    while (!reader.atEnd())
        notes += reader.readNext() == QXmlStreamReader::StartElement && reader.name() == u"M";
    Fuzz::require(!reader.hasError(), "the document is well-formed");
    return notes;
}

void requireFinished(const POmeDocument& document) {
    Fuzz::require(countNotes(document.toXml()) == document.notes.size(), "every note is kept");
}

void requireUnfinished(const POmeDocument& document) {
    POmeDocument::Unfinished unfinished = document.toUnfinishedXml();
    const QByteArray count = POmeDocument::countText(1234);
    Fuzz::require(unfinished.xml.mid(unfinished.countPosition, count.size()) ==
                      POmeDocument::countText(1),
                  "the number of pictures is where it will be overwritten");
    unfinished.xml.replace(unfinished.countPosition, count.size(), count);
    Fuzz::require(countNotes(unfinished.xml) == document.notes.size(), "every note is kept");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const POmeDocument document = makeDocument(Fuzz::toBytes(data, size).split('\0'));
    if (size % 2 == 0)
        requireFinished(document);
    else
        requireUnfinished(document);
    return 0;
}
