// SPDX-License-Identifier: MIT
#include <apps/pcdview/options/PTheme.h>

#include <QApplication>
#include <QPalette>
#include <QSettings>
#include <QStyle>
#include <QStyleFactory>

#include <algorithm>

namespace {

const QString themeKey = u"window/theme"_qs;

struct Colors {
    QColor window;
    QColor base;
    QColor button;
    QColor text;
    QColor faint;
    QColor highlight;
    QColor notice;
};

const Colors light{{0xf0, 0xf0, 0xf0}, {0xff, 0xff, 0xff}, {0xf4, 0xf4, 0xf4}, {0x1c, 0x1c, 0x1c},
                   {0x8c, 0x8c, 0x8c}, {0x2a, 0x6f, 0xc9}, {0xff, 0xf2, 0xc4}};
const Colors dark{{0x2b, 0x2d, 0x30}, {0x1f, 0x20, 0x22}, {0x3a, 0x3d, 0x41}, {0xe6, 0xe6, 0xe6},
                  {0x8a, 0x8d, 0x91}, {0x3b, 0x7d, 0xd8}, {0x55, 0x4a, 0x20}};

/// The palette; shades in between are derived from the button's colour.
QPalette toPalette(const Colors& colors) {
    QPalette palette(colors.button, colors.window);
    palette.setColor(QPalette::Base, colors.base);
    palette.setColor(QPalette::AlternateBase, colors.window);
    palette.setColor(QPalette::ToolTipBase, colors.notice);
    palette.setColor(QPalette::ToolTipText, colors.text);
    palette.setColor(QPalette::PlaceholderText, colors.faint);
    palette.setColor(QPalette::Highlight, colors.highlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, colors.highlight.lighter(120));
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, colors.text);
        palette.setColor(QPalette::Disabled, role, colors.faint);
    }
    return palette;
}

} // namespace

void PTheme::apply(Kind kind) {
    static const QString systemStyle = QApplication::style()->name();
    static const QPalette systemPalette = QApplication::palette();
    if (kind == Kind::System) {
        QApplication::setStyle(QStyleFactory::create(systemStyle));
        QApplication::setPalette(systemPalette);
        return;
    }
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_qs));
    QApplication::setPalette(toPalette(kind == Kind::Dark ? dark : light));
}

QString PTheme::name(Kind kind) {
    switch (kind) {
    case Kind::Light:
        return u"light"_qs;
    case Kind::Dark:
        return u"dark"_qs;
    case Kind::System:
        break;
    }
    return u"system"_qs;
}

PTheme::Kind PTheme::fromName(const QString& name) {
    const QList<Kind> kinds = all();
    const auto kind =
        std::find_if(kinds.begin(), kinds.end(), [&](Kind k) { return PTheme::name(k) == name; });
    return kind == kinds.end() ? Kind::System : *kind;
}

bool PTheme::isKnown(const QString& name) {
    return PTheme::name(fromName(name)) == name;
}

PTheme::Kind PTheme::chosen() {
    return fromName(QSettings().value(themeKey).toString());
}

void PTheme::choose(Kind kind) {
    QSettings().setValue(themeKey, name(kind));
    apply(kind);
}
