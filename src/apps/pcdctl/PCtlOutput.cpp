// SPDX-License-Identifier: MIT
#include "PCtlOutput.h"

#include <apps/common/PCameraIdentity.h>

#include <QJsonDocument>

#include <cstdio>

namespace {

void write(std::FILE* stream, const QByteArray& text) {
    std::fwrite(text.constData(), 1, std::size_t(text.size()), stream);
}

} // namespace

void PCtlOutput::printLine(const QString& line) {
    write(stdout, line.toUtf8() + '\n');
}

void PCtlOutput::printDocument(const QJsonObject& object) {
    write(stdout, QJsonDocument(object).toJson(QJsonDocument::Indented));
}

void PCtlOutput::printJsonLine(const QJsonObject& object) {
    write(stdout, QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
}

void PCtlOutput::printMessage(const QString& message) {
    // What was printed before must also appear before, where both streams are one terminal.
    std::fflush(stdout);
    write(stderr, "pcdctl: " + message.toUtf8() + '\n');
}

bool PCtlOutput::flush() {
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

QJsonObject PCtlOutput::jsonOf(const PCameraIdentity& camera) {
    return {{u"id"_qs, camera.id},
            {u"model"_qs, camera.model},
            {u"serial"_qs, camera.serial},
            {u"simulated"_qs, camera.simulated}};
}
