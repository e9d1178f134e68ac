// SPDX-License-Identifier: MIT
#include <PCdGui/text/PShownWords.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QRegularExpression>
#include <QStackedWidget>
#include <QStringList>
#include <QTabBar>
#include <QTextDocumentFragment>

namespace {

QString withoutTags(const QString& text) {
    return Qt::mightBeRichText(text) ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
}

/// "&&" stands for a literal "&"; a single "&" marks a shortcut.
QString withoutMarks(QString text) {
    static const QRegularExpression mark(u"&(.?)"_qs);
    return text.replace(mark, u"\\1"_qs);
}

QString labelText(const QLabel& label) {
    const QString text =
        label.textFormat() == Qt::PlainText ? label.text() : withoutTags(label.text());
    return label.buddy() == nullptr ? text : withoutMarks(text);
}

QStringList itemTexts(const QComboBox& box) {
    QStringList items;
    for (int index = 0; index < box.count(); ++index)
        items.append(box.itemText(index));
    return items;
}

QStringList tabTitles(const QTabBar& tabs) {
    QStringList titles;
    for (int index = 0; index < tabs.count(); ++index)
        titles.append(withoutMarks(tabs.tabText(index)));
    return titles;
}

QStringList shownTexts(const QWidget& widget) {
    if (const auto* const label = qobject_cast<const QLabel*>(&widget))
        return {labelText(*label)};
    if (const auto* const button = qobject_cast<const QAbstractButton*>(&widget))
        return {withoutMarks(button->text())};
    if (const auto* const group = qobject_cast<const QGroupBox*>(&widget))
        return {withoutMarks(group->title())};
    if (const auto* const box = qobject_cast<const QComboBox*>(&widget))
        return itemTexts(*box);
    if (const auto* const tabs = qobject_cast<const QTabBar*>(&widget))
        return tabTitles(*tabs);
    return {};
}

/// True unless the part is hidden; a page behind another one is hidden too, but the user can open
/// it.
bool isOnIt(const QWidget& part) {
    return !part.isWindow() &&
           (!part.isHidden() || qobject_cast<const QStackedWidget*>(part.parent()) != nullptr);
}

void collectInside(const QWidget& widget, QStringList& texts);

void collect(const QWidget& widget, QStringList& texts) {
    texts += shownTexts(widget);
    texts += withoutTags(widget.toolTip());
    collectInside(widget, texts);
}

void collectInside(const QWidget& widget, QStringList& texts) {
    const auto parts = widget.findChildren<const QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget* part : parts) {
        if (isOnIt(*part))
            collect(*part, texts);
    }
}

QString inLines(QStringList texts) {
    texts.removeAll(QString());
    return texts.join(u'\n');
}

} // namespace

QString PShownWords::on(const QWidget& widget) {
    QStringList texts;
    collect(widget, texts);
    return inLines(texts);
}

QString PShownWords::inside(const QWidget& widget) {
    QStringList texts;
    collectInside(widget, texts);
    return inLines(texts);
}
