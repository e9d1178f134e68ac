// SPDX-License-Identifier: MIT
#include <apps/pcdctl/cli/PCtlOutput.h>

#include <apps/common/camera/PCameraIdentity.h>

#include <PCore/PPrintableText.h>

#include <QFileInfo>
#include <QJsonDocument>

#include <cstdio>

namespace {

void write(std::FILE* stream, const QByteArray& text) {
    std::fwrite(text.constData(), 1, std::size_t(text.size()), stream);
}

QByteArray toLine(const QString& text) {
    return PPrintableText::toLine(text).toUtf8();
}

QByteArray toLines(const QString& text) {
    return PPrintableText::toLines(text).toUtf8();
}

} // namespace

void PCtlOutput::printLine(const QString& line) {
    write(stdout, toLine(line) + '\n');
}

void PCtlOutput::printLines(const QString& text) {
    write(stdout, toLines(text) + '\n');
}

void PCtlOutput::printColumns(const QString& first, const QString& second) {
    write(stdout, toLine(first) + '\t' + toLine(second) + '\n');
}

void PCtlOutput::printDocument(const QJsonObject& object) {
    write(stdout, QJsonDocument(object).toJson(QJsonDocument::Indented));
}

void PCtlOutput::printJsonLine(const QJsonObject& object) {
    write(stdout, QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
}

void PCtlOutput::printMessage(const QString& message) {
    // Keeps the order of the lines if both streams go to one terminal.
    std::fflush(stdout);
    write(stderr, "pcdctl: " + toLines(message) + '\n');
}

bool PCtlOutput::flush() {
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

QString PCtlOutput::toFrames(quint64 count) {
    return (count == 1 ? u"%1 frame"_qs : u"%1 frames"_qs).arg(count);
}

QString PCtlOutput::toSaved(const QString& path, bool isKept) {
    return isKept ? u"Saved "_qs + path : u"Not kept: "_qs + QFileInfo(path).fileName();
}

QJsonValue PCtlOutput::toValue(const QString& text) {
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

QJsonObject PCtlOutput::toJson(const PCameraIdentity& camera) {
    return {{u"id"_qs, camera.id},
            {u"model"_qs, camera.model},
            {u"serial"_qs, camera.serial},
            {u"simulated"_qs, camera.simulated}};
}
