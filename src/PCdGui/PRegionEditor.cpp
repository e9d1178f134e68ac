// SPDX-License-Identifier: MIT
#include <PCdGui/PRegionEditor.h>

#include <PCdGui/PRegionAxis.h>

#include <PGui/PNumberField.h>

#include <PCd/PDeviceProperty.h>

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

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
    m_x = addField(layout, 0, 0, tr("X"));
    m_y = addField(layout, 0, 2, tr("Y"));
    m_width = addField(layout, 1, 0, tr("Width"));
    m_height = addField(layout, 1, 2, tr("Height"));
    m_whole = new QPushButton(tr("Whole sensor"), area);
    m_whole->setAutoDefault(false);
    layout->addWidget(m_whole, 2, 0, 1, 4, Qt::AlignRight);
    layout->setColumnStretch(1, 1);
    layout->setColumnStretch(3, 1);
    connect(m_x, &PNumberField::valueEdited, this, &PRegionEditor::moveCorner);
    connect(m_y, &PNumberField::valueEdited, this, &PRegionEditor::moveCorner);
    connect(m_width, &PNumberField::valueEdited, this, &PRegionEditor::sendShown);
    connect(m_height, &PNumberField::valueEdited, this, &PRegionEditor::sendShown);
    connect(m_whole, &QPushButton::clicked, this, &PRegionEditor::sendWhole);
    begin(area, m_x);
}

PNumberField* PRegionEditor::addField(QGridLayout* layout, int row, int column,
                                      const QString& title) {
    auto* const field = new PNumberField(layout->parentWidget());
    field->setLeastCharacters(digitsOfASensor);
    field->setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::Fixed);
    field->setAccessibleName(tr("%1: %2").arg(property()->title(), title));
    auto* const label = new QLabel(title);
    label->setBuddy(field);
    layout->addWidget(label, row, column);
    layout->addWidget(field, row, column + 1);
    return field;
}

void PRegionEditor::showProperty(const QVariant& value, const QVariant& range) {
    m_range = range.value<PScanAreaRange>();
    const bool known = !m_range.bounds.isEmpty();
    for (QWidget* part : std::initializer_list<QWidget*>{m_x, m_y, m_width, m_height, m_whole})
        part->setEnabled(known);
    showRegion(value.toRect());
}

void PRegionEditor::showRegion(const QRect& region) {
    const PRegionAxis across = PRegionAxis::horizontal(m_range);
    const PRegionAxis down = PRegionAxis::vertical(m_range);
    fill(m_x, across.offsets(), region.x());
    fill(m_y, down.offsets(), region.y());
    fill(m_width, across.sizes(region.x()), region.width());
    fill(m_height, down.sizes(region.y()), region.height());
}

QRect PRegionEditor::shown() const {
    return QRect(int(m_x->value()), int(m_y->value()), int(m_width->value()),
                 int(m_height->value()));
}

void PRegionEditor::moveCorner() {
    // A corner can go anywhere: numbers may then be entered in any order.
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
