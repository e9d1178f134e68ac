// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QString>

struct PCameraIdentity;

/// What the program prints. Results go to the standard output, everything else to the standard
/// error stream; characters that control a terminal are made visible. The main thread.
namespace PCtlOutput {

/// A line on standard output.
void printLine(const QString& line);
/// Several lines on standard output; names in them must have been through PPrintableText.
void printLines(const QString& text);
/// Two texts with a tabulator between them, on a line of standard output.
void printColumns(const QString& first, const QString& second);
/// A JSON document on the standard output, in several lines or in one.
void printDocument(const QJsonObject& object);
void printJsonLine(const QJsonObject& object);
/// "pcdctl: …" on the standard error stream.
void printMessage(const QString& message);

/// Writes out what is buffered. False if anything could not be written to the standard output.
bool flush();

/// "1 frame", "5 frames".
QString toFrames(quint64 count);

/// "Saved" with the path, or, of a file that is removed afterwards, that it is not kept.
QString toSaved(const QString& path, bool isKept);
/// A text in JSON; null for an empty one, which is not known.
QJsonValue toValue(const QString& text);
/// {id, model, serial, simulated}.
QJsonObject toJson(const PCameraIdentity& camera);

} // namespace PCtlOutput
