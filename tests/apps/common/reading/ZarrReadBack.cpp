// SPDX-License-Identifier: MIT
#include <apps/common/reading/ZarrReadBack.h>

#include <support/FolderTest.h>

#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>

#include <blosc.h>

QByteArray ZarrReadBack::bytes(const QString& name) const {
    return readFile(m_folder + u'/' + name);
}

QJsonObject ZarrReadBack::document(const QString& name) const {
    return QJsonDocument::fromJson(bytes(name)).object();
}

QJsonObject ZarrReadBack::multiscale() const {
    return document(u"0/.zattrs"_qs).value(u"multiscales"_qs).toArray().at(0).toObject();
}

std::vector<int> ZarrReadBack::shape(int level) const {
    std::vector<int> shape;
    const QJsonObject array = document(u"0/%1/.zarray"_qs.arg(level));
    for (const QJsonValue& size : array.value(u"shape"_qs).toArray())
        shape.push_back(size.toInt());
    return shape;
}

QByteArray ZarrReadBack::chunk(int frame, int channel, int level) const {
    const QByteArray compressed = bytes(u"0/%1/%2/%3/0/0"_qs.arg(
        QString::number(level), QString::number(frame), QString::number(channel)));
    std::size_t size = 0;
    if (blosc_cbuffer_validate(compressed.constData(), std::size_t(compressed.size()), &size) != 0)
        return {};
    QByteArray samples(qsizetype(size), '\0');
    const int found =
        blosc_decompress_ctx(compressed.constData(), samples.data(), std::size_t(size), 1);
    return found == int(size) ? samples : QByteArray();
}

QByteArray ZarrReadBack::xml() const {
    return bytes(u"OME/METADATA.ome.xml"_qs);
}

QStringList ZarrReadBack::times() const {
    return QString::fromLatin1(bytes(u"OME/frames.csv"_qs)).split(u'\n', Qt::SkipEmptyParts);
}

QStringList ZarrReadBack::parts() const {
    QStringList names;
    QDirIterator entries(m_folder, {u"*.part"_qs},
                         QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext())
        names.append(entries.next());
    return names;
}
