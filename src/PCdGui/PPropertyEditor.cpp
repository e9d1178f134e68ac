// SPDX-License-Identifier: MIT
#include <PCdGui/PPropertyEditor.h>

#include <PCdGui/PEditorMenu.h>
#include <PCdGui/PPropertyWords.h>

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QMenu>

PPropertyEditor::PPropertyEditor(PDeviceProperty* property)
    : m_property(property)
    , m_description(property->description())
    , m_watch(property->device(), this)
    , m_sender(property) {
}

PPropertyEditor::~PPropertyEditor() {
    // Parts that lose the focus when they go commit what was typed into them, and the property
    // answers what is sent: nobody is left to hear of either.
    const QList<QWidget*> parts = findChildren<QWidget*>();
    for (QWidget* part : parts)
        disconnect(part, nullptr, this, nullptr);
    if (m_property)
        disconnect(m_property, nullptr, this, nullptr);
    disconnect(&m_sender, nullptr, this, nullptr);
    m_sender.flush();
}

void PPropertyEditor::begin(QWidget* control, QWidget* focus) {
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(control);
    setFocusProxy(focus);
    setAccessibleName(m_property->title());
    setAccessibleDescription(m_property->description());
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
    connect(&m_sender, &PValueSender::settled, this, &PPropertyEditor::refresh);
    connect(&m_watch, &PDeviceWatch::usableChanged, this, &PPropertyEditor::updateUsable);
}

void PPropertyEditor::refresh() {
    m_watch.update();
    // What waits to be set is newer than what the property has; the property will answer it.
    if (m_property && !m_sender.isWaiting())
        showProperty(m_property->valueInner(), m_property->rangeInner());
}

void PPropertyEditor::updateUsable() {
    const bool usable = m_property && m_watch.isUsable();
    if (!usable)
        m_sender.drop();
    setEnabled(usable);
    updateToolTip();
}

void PPropertyEditor::updateToolTip() {
    if (m_property && m_watch.isUsable())
        setToolTip(PPropertyWords::toolTip(*m_property, m_description));
    else
        setToolTip(tr("The device is not connected."));
}

void PPropertyEditor::setTexts(const QString& title, const QString& description) {
    m_description = description;
    setAccessibleName(title);
    setAccessibleDescription(description);
    showTitle(title);
    updateToolTip();
}

void PPropertyEditor::onPropertyDestroyed() {
    m_property.clear();
    updateUsable();
}

void PPropertyEditor::send(const QVariant& value) {
    if (m_property && m_watch.isUsable())
        m_sender.post(value);
    else
        refresh();
}

void PPropertyEditor::resetToDefault() {
    if (m_property)
        send(m_property->defaultValue());
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
