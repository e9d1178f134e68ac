// SPDX-License-Identifier: MIT
#include <PGui/PNumberField.h>

#include <QEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyle>
#include <QStyleOptionSpinBox>

#include <algorithm>
#include <cmath>

PNumberField::PNumberField(QWidget* parent)
    : QAbstractSpinBox(parent)
    , m_text(std::make_shared<PNumberText>()) {
    setKeyboardTracking(false);
    setAlignment(Qt::AlignRight);
    // The wheel must not set the focus: the page may be scrolling under the pointer.
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractSpinBox::editingFinished, this, &PNumberField::commit);
    writeValue();
}

PNumberField::~PNumberField() = default;

void PNumberField::setScale(const PRangeScale& scale) {
    m_scale = scale;
    updateGeometry();
    showValue(m_value);
}

void PNumberField::setNumberText(std::shared_ptr<const PNumberText> text) {
    m_text = std::move(text);
    updateGeometry();
    showValue(m_value);
}

void PNumberField::setLeastCharacters(int count) {
    m_leastCharacters = count;
    updateGeometry();
}

void PNumberField::showValue(double value) {
    m_value = value;
    if (!lineEdit()->isModified())
        writeValue();
    update(); // the arrows: one of them may be disabled
}

void PNumberField::writeValue() {
    QLineEdit* const line = lineEdit();
    const QString text = toText(m_value);
    if (text == line->text() && !line->isModified())
        return;
    const bool allSelected = line->hasSelectedText() && line->selectedText() == line->text();
    const int cursor = line->cursorPosition();
    line->setText(text);
    // After Tab all text is selected, so that typing replaces it; keep it selected when the value
    // changes.
    if (allSelected)
        line->selectAll();
    else
        line->setCursorPosition(cursor);
}

QString PNumberField::toText(double value) const {
    return std::isnan(value) ? QString() : m_text->toText(value, m_scale.decimals(), locale());
}

void PNumberField::commit() {
    if (!lineEdit()->isModified())
        return;
    const QString text = lineEdit()->text();
    const std::optional<double> typed = m_text->toValue(text, m_value, locale());
    // Typing the displayed value again is not an edit, even if it is outside the range.
    if (typed && text != toText(m_value) && *typed != m_value)
        edit(m_scale.snapped(*typed));
    else
        writeValue();
}

void PNumberField::edit(double value) {
    const bool differs = value != m_value;
    m_value = value;
    lineEdit()->setModified(false);
    writeValue();
    update();
    if (differs)
        emit valueEdited(value);
}

void PNumberField::stepBy(int steps) {
    commit();
    if (std::isnan(m_value)) // there is nothing to step from
        return;
    edit(m_scale.stepped(m_value, steps));
    selectAll();
}

QAbstractSpinBox::StepEnabled PNumberField::stepEnabled() const {
    StepEnabled enabled = StepNone;
    if (m_value < m_scale.maximum())
        enabled |= StepUpEnabled;
    if (m_value > m_scale.minimum())
        enabled |= StepDownEnabled;
    return enabled;
}

QValidator::State PNumberField::validate(QString& text, int&) const {
    if (m_text->toValue(text, m_value, locale()))
        return QValidator::Acceptable;
    const QString letters = m_text->letters();
    const bool foreign = std::any_of(text.cbegin(), text.cend(), [&](QChar character) {
        return character.isLetter() && !letters.contains(character, Qt::CaseInsensitive);
    });
    return foreign ? QValidator::Invalid : QValidator::Intermediate;
}

void PNumberField::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && lineEdit()->isModified()) {
        writeValue();
        selectAll();
        return;
    }
    // First, because the base class resets the modified flag at Enter.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        commit();
    QAbstractSpinBox::keyPressEvent(event);
}

void PNumberField::changeEvent(QEvent* event) {
    QAbstractSpinBox::changeEvent(event);
    if (event->type() == QEvent::LocaleChange || event->type() == QEvent::LanguageChange)
        showValue(m_value);
}

QSize PNumberField::sizeHint() const {
    const QFontMetrics metrics(fontMetrics());
    const int least = m_leastCharacters * metrics.horizontalAdvance(u'0');
    const int ends = std::max(metrics.horizontalAdvance(toText(m_scale.minimum())),
                              metrics.horizontalAdvance(toText(m_scale.maximum())));
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    const QSize contents(std::max(least, ends) + 4, lineEdit()->sizeHint().height());
    return style()->sizeFromContents(QStyle::CT_SpinBox, &option, contents, this);
}

#include "moc_PNumberField.cpp"
