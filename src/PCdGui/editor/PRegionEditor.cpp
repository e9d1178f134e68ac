// SPDX-License-Identifier: MIT
#include <PCdGui/editor/PRegionEditor.h>

#include <PCdGui/editor/PRegionAxis.h>

#include <PGui/PNumberField.h>

#include <PCd/property/PDeviceProperty.h>

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include <limits>

namespace {

constexpr int digitsOfASensor = 5;

void fill(PNumberField* field, const PMinMaxRange<double>& range, int value) {
    field->setScale(PRangeScale(range));
    field->showValue(value);
}

} // namespace

PRegionEditor::PRegionEditor(PDeviceProperty* property)
    : PPropertyEditor(property) {
    auto* const area = new QWidget(this);
    auto* const layout = new QGridLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    m_x = addField(layout, 0, 0);
    m_y = addField(layout, 0, 2);
    m_width = addField(layout, 1, 0);
    m_height = addField(layout, 1, 2);
    m_whole = new QPushButton(area);
    m_whole->setAutoDefault(false);
    layout->addWidget(m_whole, 2, 0, 1, 4, Qt::AlignRight);
    layout->setColumnStretch(1, 1);
    layout->setColumnStretch(3, 1);
    connect(m_x.number, &PNumberField::valueEdited, this, &PRegionEditor::moveCorner);
    connect(m_y.number, &PNumberField::valueEdited, this, &PRegionEditor::moveCorner);
    connect(m_width.number, &PNumberField::valueEdited, this, &PRegionEditor::sendShown);
    connect(m_height.number, &PNumberField::valueEdited, this, &PRegionEditor::sendShown);
    connect(m_whole, &QPushButton::clicked, this, &PRegionEditor::sendWhole);
    begin(area, m_x.number);
}

PRegionEditor::Field PRegionEditor::addField(QGridLayout* layout, int row, int column) {
    auto* const number = new PNumberField(layout->parentWidget());
    number->setLeastCharacters(digitsOfASensor);
    number->setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::Fixed);
    auto* const label = new QLabel;
    label->setBuddy(number);
    layout->addWidget(label, row, column);
    layout->addWidget(number, row, column + 1);
    return {number, label};
}

void PRegionEditor::name(const Field& field, const QString& word) {
    field.label->setText(word);
    field.number->setAccessibleName(tr("%1: %2").arg(title(), word));
}

void PRegionEditor::showWords() {
    name(m_x, tr("X"));
    name(m_y, tr("Y"));
    name(m_width, tr("Width"));
    name(m_height, tr("Height"));
    m_whole->setText(tr("Whole sensor"));
}

void PRegionEditor::showProperty(const QVariant& value, const QVariant& range) {
    m_range = range.value<PScanAreaRange>();
    const bool known = !m_range.bounds.isEmpty();
    for (const Field& field : {m_x, m_y, m_width, m_height})
        field.number->setEnabled(known && value.isValid());
    m_whole->setEnabled(known);
    showRegion(value.toRect());
    if (!value.isValid())
        clearFields();
}

void PRegionEditor::showRegion(const QRect& region) {
    const PRegionAxis across = PRegionAxis::horizontal(m_range);
    const PRegionAxis down = PRegionAxis::vertical(m_range);
    fill(m_x.number, across.offsets(), region.x());
    fill(m_y.number, down.offsets(), region.y());
    fill(m_width.number, across.sizes(region.x()), region.width());
    fill(m_height.number, down.sizes(region.y()), region.height());
}

void PRegionEditor::clearFields() {
    for (const Field& field : {m_x, m_y, m_width, m_height})
        field.number->showValue(std::numeric_limits<double>::quiet_NaN());
}

QRect PRegionEditor::shown() const {
    return QRect(int(m_x.number->value()), int(m_y.number->value()), int(m_width.number->value()),
                 int(m_height.number->value()));
}

void PRegionEditor::moveCorner() {
    // Any corner is accepted, so that the numbers can be entered in any order.
    QRect region = shown();
    region.setWidth(PRegionAxis::horizontal(m_range).fitted(region.x(), region.width()));
    region.setHeight(PRegionAxis::vertical(m_range).fitted(region.y(), region.height()));
    showRegion(region);
    sendShown();
}

void PRegionEditor::sendShown() {
    send(shown());
}

void PRegionEditor::sendWhole() {
    send(m_range.bounds);
}

#include "moc_PRegionEditor.cpp"
