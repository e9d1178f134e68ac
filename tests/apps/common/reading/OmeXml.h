// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

/// A parsed OME-XML document. A value.
class OmeXml {
public:
    explicit OmeXml(const QByteArray& xml);

    struct Element {
        QString name;
        QString parent;
        QHash<QString, QString> attributes;
        QString text;
    };
    /// All elements of this name, in order.
    QList<Element> elements(const char* name) const;
    /// An attribute of the first element of this name; an empty text if there is none.
    QString attribute(const char* element, const char* name) const;
    QString text(const char* element) const;
    /// The value of a key in the map annotation.
    QString note(const QString& key) const;

    /// The errors in the document, or an empty text: by the schema that the environment variable
    /// PCD_OME_SCHEMA names, through xmllint. Without the variable it prints on the standard output
    /// that only the structure is checked: required elements and attributes, their order,
    /// references.
    QString complaints() const;

private:
    QString structureComplaints() const;
    QStringList childNames(const char* parent) const;

    QByteArray m_xml;
    QList<Element> m_elements;
    QString m_error;
};
