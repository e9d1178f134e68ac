// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The language of a program and of its plugins. The main thread.
class PTranslations {
public:
    /// True for a language of the programs, "en" or "ru", also with a country ("ru_RU").
    static bool isKnown(const QString& language);
    /// The requested language: `requested` ("ru", "en"), else the environment variable PCD_LANG,
    /// else that of the system.
    static QString language(const QString& requested);
    /// Installs every catalogue for this language in the resources, including those of the plugins
    /// loaded so far. Existing texts are not changed. Returns the number of catalogues.
    static int install(const QString& language);
};
