// SPDX-License-Identifier: MIT
#pragma once

#include <QIconEngine>

/// Draws the icon of an action: that of the desktop's icon theme, or the program's own where the
/// theme has none. An icon in one shade of grey takes the colour of the text around it, so that it
/// is seen in light and in dark colours; other icons keep their colours. The GUI thread.
class PActionIcon : public QIconEngine {
public:
    /// The icon of this name, which should be one of freedesktop's; follows the theme and the
    /// palette as they change.
    static QIcon make(const QString& name);

    explicit PActionIcon(QString name);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QString iconName() override { return m_name; }
    bool isNull() override;
    QIconEngine* clone() const override;

private:
    QString m_name;
};
