// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

/// The colours of the program: those of the system, or light or dark ones. The GUI thread.
class PTheme {
public:
    /// Which colours.
    enum class Kind { System, Light, Dark };

    /// Applies these colours to the program. The first call must come before any other change of
    /// style or palette.
    static void apply(Kind kind);

    /// Kinds by name: "system", "light" or "dark"; no other name is known.
    static QString name(Kind kind);
    static Kind fromName(const QString& name);
    static bool isKnown(const QString& name);
    static QList<Kind> all() { return {Kind::System, Kind::Light, Kind::Dark}; }

    /// The kind that the user chose last, stored between runs of the program.
    static Kind chosen();
    static void choose(Kind kind);
};
