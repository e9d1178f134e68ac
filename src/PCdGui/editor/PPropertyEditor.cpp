// SPDX-License-Identifier: MIT
#include <PCdGui/editor/PPropertyEditor.h>

#include <PCdGui/editor/PEditorMenu.h>
#include <PCdGui/text/PPropertyDisplay.h>

#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QMenu>

#include <algorithm>
#include <utility>

namespace {

constexpr std::chrono::seconds firstPause{1};
constexpr std::chrono::seconds longestPause{16};
constexpr std::chrono::milliseconds quickReading{100}; // a longer one is felt

PEnumeration withTitles(const PEnumeration& choices, const PEnumeration& titled) {
    PEnumeration result;
    for (const PEnumerationItem& item : choices.items()) {
        const QString title = titled.getItem(item.id).title;
        result.addItem(item.id, item.name, title.isEmpty() ? item.title : title, item.data);
    }
    return result;
}

} // namespace

PPropertyEditor::PPropertyEditor(PDeviceProperty* property)
    : m_property(property)
    , m_texts{property->title(), property->description(), {}}
    , m_watch(property->device(), this)
    , m_setter(property)
    , m_pause(firstPause) {
    m_reading.setSingleShot(true);
    connect(&m_reading, &QTimer::timeout, this, &PPropertyEditor::readAgain);
}

PPropertyEditor::~PPropertyEditor() {
    // A part that loses the focus while it is destroyed commits its text, and the property then
    // emits its value: this object can no longer handle either.
    const QList<QWidget*> parts = findChildren<QWidget*>();
    for (QWidget* part : parts)
        disconnect(part, nullptr, this, nullptr);
    if (m_property)
        disconnect(m_property, nullptr, this, nullptr);
    disconnect(&m_setter, nullptr, this, nullptr);
    m_setter.flush();
}

void PPropertyEditor::begin(QWidget* control, QWidget* focus) {
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(control);
    setFocusProxy(focus);
    setAccessibleName(m_texts.title);
    setAccessibleDescription(m_texts.description);
    showWords();
    const QList<QWidget*> parts = findChildren<QWidget*>();
    for (QWidget* part : parts)
        part->installEventFilter(this);
    follow();
    updateUsable();
    refresh();
}

void PPropertyEditor::follow() {
    connect(m_property, &PDeviceProperty::valueChanged, this, &PPropertyEditor::refresh);
    connect(m_property, &PDeviceProperty::rangeChanged, this, [this] {
        updateToolTip();
        refresh();
    });
    connect(m_property, &QObject::destroyed, this, &PPropertyEditor::onPropertyDestroyed);
    connect(&m_setter, &PCoalescingSetter::settled, this, &PPropertyEditor::refresh);
    connect(&m_setter, &PCoalescingSetter::refused, this, &PPropertyEditor::onRefused);
    connect(&m_watch, &PDeviceWatch::usableChanged, this, &PPropertyEditor::updateUsable);
}

void PPropertyEditor::refresh() {
    m_watch.update();
    // The pending value is newer than the property's; the property emits a signal once it is set.
    if (m_property && !m_setter.isWaiting())
        showProperty(m_property->valueInner(), shownRange());
    const bool isKnown = hasValue();
    if (std::exchange(m_isKnown, isKnown) != isKnown)
        updateToolTip();
    if (isKnown) {
        m_reading.stop();
        m_pause = firstPause;
    } else {
        readAgainLater();
    }
}

/// False if the device did not report the value.
bool PPropertyEditor::hasValue() const {
    return !m_property || m_property->type() == PCD::DevicePropertyType::Action ||
           m_property->valueInner().isValid();
}

bool PPropertyEditor::canRead() const {
    return isVisible() && !hasValue() && m_watch.isUsable() && m_property->device() != nullptr;
}

/// Not repeated if it takes long: the window does not react meanwhile, and the settings of a camera
/// that does not answer are all unread.
void PPropertyEditor::readAgain() {
    if (!canRead())
        return;
    QElapsedTimer time;
    time.start();
    const QPointer<PPropertyEditor> self(this); // a slot of valueChanged() may delete it
    m_property->updateValueFromDevice();
    if (self.isNull())
        return;
    m_pause = std::min(2 * m_pause, longestPause);
    if (time.elapsed() < quickReading.count())
        readAgainLater();
}

void PPropertyEditor::readAgainLater() {
    if (canRead() && !m_reading.isActive())
        m_reading.start(m_pause);
}

QVariant PPropertyEditor::shownRange() const {
    const QVariant range = m_property ? m_property->rangeInner() : QVariant();
    if (range.metaType() != QMetaType::fromType<PEnumeration>())
        return range;
    return QVariant::fromValue(withTitles(range.value<PEnumeration>(), m_texts.choices));
}

void PPropertyEditor::updateUsable() {
    const bool usable = m_property && m_watch.isUsable();
    if (!usable)
        m_setter.drop();
    setEnabled(usable);
    updateToolTip();
}

void PPropertyEditor::updateToolTip() {
    if (m_property && m_watch.isUsable())
        setToolTip(PPropertyDisplay::toolTip(*m_property, shownRange(), m_texts.description));
    else
        setToolTip(tr("The device is not connected."));
}

void PPropertyEditor::setTexts(const PDeviceTexts::Texts& texts) {
    m_texts = texts;
    setAccessibleName(texts.title);
    setAccessibleDescription(texts.description);
    if (m_property)
        showWords();
    updateToolTip();
    refresh();
}

void PPropertyEditor::onPropertyDestroyed() {
    m_property.clear();
    updateUsable();
}

void PPropertyEditor::onRefused() {
    emit refused(m_texts.title,
                 PPropertyDisplay::valueText(*m_property, shownRange(), m_property->valueInner()));
}

void PPropertyEditor::send(const QVariant& value) {
    if (m_property && m_watch.isUsable())
        m_setter.post(value);
    else
        refresh();
}

void PPropertyEditor::resetToDefault() {
    if (m_property)
        send(m_property->defaultValue());
}

void PPropertyEditor::setCondition(const PCoalescingSetter::Condition& condition) {
    m_setter.setCondition(condition);
}

void PPropertyEditor::touch() {
    setFocus(Qt::MouseFocusReason);
}

bool PPropertyEditor::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::ContextMenu)
        return QWidget::eventFilter(watched, event);
    openMenu(static_cast<QWidget*>(watched), static_cast<QContextMenuEvent*>(event)->globalPos());
    return true;
}

void PPropertyEditor::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::LanguageChange)
        return;
    if (m_property)
        showWords();
    updateToolTip();
}

void PPropertyEditor::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_pause = firstPause;
    readAgain();
}

void PPropertyEditor::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_reading.stop();
}

void PPropertyEditor::contextMenuEvent(QContextMenuEvent* event) {
    openMenu(this, event->globalPos());
}

void PPropertyEditor::openMenu(QWidget* part, const QPoint& globalPosition) {
    if (m_property && m_property->type() == PCD::DevicePropertyType::Action)
        return; // nothing to reset
    QMenu* const menu = PEditorMenu::create(this, part);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(globalPosition);
}

#include "moc_PPropertyEditor.cpp"
