// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The language of a program and of its plugins. The main thread.
class PTranslations {
public:
    /// Is this a language of the programs: "en" or "ru", also with a country ("ru_RU")?
    static bool isKnown(const QString& language);
    /// The requested language: `requested` ("ru", "en"), else the environment variable PCD_LANG,
    /// else that of the system.
    static QString language(const QString& requested);
    /// Installs every catalogue for this language among the resources, those of the plugins loaded
    /// so far too. Texts that were made before stay as they are. Returns how many there are.
    static int install(const QString& language);
};
