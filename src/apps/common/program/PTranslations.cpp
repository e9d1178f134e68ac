// SPDX-License-Identifier: MIT
#include <apps/common/program/PTranslations.h>

#include <PCore/PPrintableText.h>

#include <QCoreApplication>
#include <QDirIterator>
#include <QLocale>
#include <QTranslator>

#include <memory>

namespace {

const char* const languageVariable = "PCD_LANG";

/// "ru" of "ru_RU".
QString toLanguage(const QString& locale) {
    return locale.section(u'_', 0, 0).section(u'-', 0, 0).toLower();
}

bool installFile(const QString& path, const QString& language) {
    auto translator = std::make_unique<QTranslator>();
    // Catalogues may have any name; the language is read from the catalogue.
    if (!translator->load(path) || toLanguage(translator->language()) != toLanguage(language))
        return false;
    translator->setParent(QCoreApplication::instance());
    return QCoreApplication::installTranslator(translator.release());
}

} // namespace

bool PTranslations::isKnown(const QString& language) {
    return QStringList{u"en"_qs, u"ru"_qs}.contains(toLanguage(language));
}

PStatus PTranslations::checkEnvironment() {
    const QString language = qEnvironmentVariable(languageVariable);
    if (language.isEmpty() || isKnown(language))
        return PStatus::Ok;
    return PStatus::failure(
        u"PCD_LANG: \"%1\" is not a language of this program, so it is ignored: expected en or ru"_qs
            .arg(PPrintableText::toLine(language)));
}

QString PTranslations::language(const QString& requested) {
    if (!requested.isEmpty())
        return requested;
    const QString fromEnvironment = qEnvironmentVariable(languageVariable);
    return isKnown(fromEnvironment) ? fromEnvironment : QLocale::system().name();
}

int PTranslations::install(const QString& language) {
    int installed = 0;
    QDirIterator catalogues(u":/"_qs, {u"*.qm"_qs}, QDir::Files, QDirIterator::Subdirectories);
    while (catalogues.hasNext())
        installed += installFile(catalogues.next(), language) ? 1 : 0;
    return installed;
}
