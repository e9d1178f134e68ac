// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QString>

/// The language of a program and of its plugins. The main thread.
class PTranslations {
public:
    /// True for a language of the programs, "en" or "ru", also with a country ("ru_RU").
    static bool isKnown(const QString& language);
    /// Fails with the value and the languages there are if the environment variable PCD_LANG names
    /// another.
    static PStatus checkEnvironment();
    /// The requested language: `requested` ("ru", "en"), else that of the environment variable
    /// PCD_LANG, else, also if that is unknown, that of the system.
    static QString language(const QString& requested);
    /// Installs every catalogue for this language in the resources, including those of the plugins
    /// loaded so far. Existing texts are not changed. Returns the number of catalogues.
    static int install(const QString& language);
};
