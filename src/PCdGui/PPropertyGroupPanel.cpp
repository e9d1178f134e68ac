// SPDX-License-Identifier: MIT
#include <PCdGui/PPropertyGroupPanel.h>

#include <PCdGui/PGroupBoxPicture.h>
#include <PCdGui/PPropertyLabel.h>
#include <PCdGui/editor/PDeviceWatch.h>
#include <PCdGui/editor/PPropertyEditor.h>
#include <PCdGui/text/PDeviceTexts.h>
#include <PCdGui/text/PPropertyDisplay.h>
#include <PCdGui/text/PShownWords.h>

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyRoles.h>

#include <QFormLayout>
#include <QPaintEvent>
#include <QPainter>
#include <QStyleOptionGroupBox>

#include <algorithm>

namespace {

bool hasAny(const PDeviceProperty& property, const QList<PRole>& roles) {
    const PRoleBindings bindings = PPropertyRoles::of(property);
    return std::any_of(bindings.begin(), bindings.end(),
                       [&](const PRoleBinding& binding) { return roles.contains(binding.role); });
}

constexpr int mostTitleCharacters = 18;

QString searchWords(const QByteArray& id, const PDeviceTexts::Texts& texts, const QString& group) {
    const QString title = texts.title.isEmpty() ? group : texts.title;
    const QStringList words{title, QString::fromLatin1(id), texts.description};
    return words.join(u'\n');
}

bool hasAll(const QString& text, const QStringList& words) {
    return std::all_of(words.cbegin(), words.cend(), [&](const QString& word) {
        return text.contains(word, Qt::CaseInsensitive);
    });
}

/// An editor's own tool tip is left out: it has the description, which is searched anyway, and the
/// range, which would match too much.
QString shownOn(const QWidget& editor) {
    return qobject_cast<const PPropertyEditor*>(&editor) != nullptr ? PShownWords::inside(editor)
                                                                    : PShownWords::on(editor);
}

/// A long title is wrapped to a second line, unless it is a single word.
int fittingWidth(const QWidget& title) {
    const int most = mostTitleCharacters * title.fontMetrics().averageCharWidth();
    return std::max(std::min(title.sizeHint().width(), most), title.minimumSizeHint().width());
}

/// A plugin's panel may overwrite the cached value with values read from the device when it is
/// created: the fields that the device does not hold are restored, and the panel shows them.
QWidget* newEditor(PDeviceProperty& property) {
    const QVariant before = property.valueInner();
    QWidget* const editor = property.createWidget();
    property.restoreHostFields(before);
    return editor;
}

/// A property's own panel does not react when the device is gone.
void disableWithDevice(QWidget* panel, PDevice* device) {
    auto* const watch = new PDeviceWatch(device, panel);
    panel->setEnabled(watch->isUsable());
    QObject::connect(watch, &PDeviceWatch::usableChanged, panel, &QWidget::setEnabled);
}

} // namespace

PPropertyGroupPanel::PPropertyGroupPanel(const QString& title,
                                         const QList<PDeviceProperty*>& properties, QWidget* parent)
    : QGroupBox(PPropertyDisplay::plainTitle(title), parent)
    , m_form(new QFormLayout(this)) {
    m_form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    m_form->setLabelAlignment(Qt::AlignLeft);
    for (PDeviceProperty* property : properties)
        addRow(property);
}

PPropertyGroupPanel::~PPropertyGroupPanel() = default;

void PPropertyGroupPanel::addRow(PDeviceProperty* property) {
    Row row{newEditor(*property), nullptr, property->id(),
            searchWords(property->id(), {property->title(), property->description(), {}}, title())};
    auto* const editor = qobject_cast<PPropertyEditor*>(row.editor);
    if (editor == nullptr)
        disableWithDevice(row.editor, property->device());
    else
        followEditor(editor);
    if (editor == nullptr || property->title().isEmpty()) {
        m_form->addRow(row.editor);
    } else {
        // A button is in the column of editors, with no title beside it.
        row.title =
            new PPropertyLabel(editor->showsTitle() ? QString() : property->title(), editor);
        addTitled(row.title, editor);
    }
    m_rows.append(row);
}

void PPropertyGroupPanel::followEditor(const PPropertyEditor* editor) {
    connect(editor, &PPropertyEditor::refused, this,
            [this](const QString& ownTitle, const QString& kept) {
                emit refused(ownTitle.isEmpty() ? title() : ownTitle, kept);
            });
}

void PPropertyGroupPanel::addTitled(QWidget* title, PPropertyEditor* editor) {
    if (editor->property()->type() != PCD::DevicePropertyType::ScanArea)
        return m_form->addRow(title, editor);
    // Four numbers are too wide to have a title beside them.
    m_form->addRow(title);
    m_form->addRow(editor);
}

void PPropertyGroupPanel::setTexts(const QString& groupTitle, const PDeviceTexts& texts) {
    setTitle(PPropertyDisplay::plainTitle(groupTitle));
    for (Row& row : m_rows) {
        const PDeviceTexts::Texts own = texts.ofProperty(row.id);
        row.words = searchWords(row.id, own, groupTitle);
        auto* const editor = qobject_cast<PPropertyEditor*>(row.editor);
        if (editor == nullptr || own.title.isEmpty())
            continue;
        editor->setTexts(own);
        if (row.title != nullptr && !editor->showsTitle())
            row.title->setTitle(own.title);
    }
}

void PPropertyGroupPanel::setCondition(const QList<PRole>& roles,
                                       const PCoalescingSetter::Condition& condition) {
    for (const Row& row : std::as_const(m_rows)) {
        auto* const editor = qobject_cast<PPropertyEditor*>(row.editor);
        if (editor != nullptr && editor->property() != nullptr &&
            hasAny(*editor->property(), roles))
            editor->setCondition(condition);
    }
}

/// Read each time: the texts of a panel change with its state and with the language.
QString PPropertyGroupPanel::wordsIn(const Row& row) {
    return row.editor ? row.words + u'\n' + shownOn(*row.editor) : row.words;
}

bool PPropertyGroupPanel::setFilter(const QString& text) {
    const QStringList words = text.simplified().split(u' ', Qt::SkipEmptyParts);
    bool any = false;
    for (const Row& row : std::as_const(m_rows)) {
        const bool shown = hasAll(wordsIn(row), words);
        m_form->setRowVisible(row.editor, shown);
        if (row.title != nullptr)
            m_form->setRowVisible(row.title, shown); // the title may be a row of its own
        any = any || shown;
    }
    return any;
}

/// A changed value repaints a part of its row, and the box behind it, for which a style loads a
/// picture and lays out the title: more than half of the cost of showing the value.
void PPropertyGroupPanel::paintEvent(QPaintEvent* event) {
    const bool isBelowTitle = event->rect().top() >= contentsRect().top();
    if (!isBelowTitle || !PGroupBoxPicture::isExact(*this))
        return QGroupBox::paintEvent(event);
    QStyleOptionGroupBox option;
    initStyleOption(&option);
    QPainter(this).drawPixmap(0, 0, PGroupBoxPicture::find(*this, option));
}

bool PPropertyGroupPanel::isBeside(const Row& row) const {
    return row.title != nullptr && row.editor && m_form->labelForField(row.editor) == row.title;
}

int PPropertyGroupPanel::titleWidth() const {
    int width = 0;
    for (const Row& row : m_rows) {
        if (isBeside(row))
            width = std::max(width, fittingWidth(*row.title));
    }
    return width;
}

void PPropertyGroupPanel::setTitleWidth(int width) {
    for (const Row& row : std::as_const(m_rows)) {
        if (isBeside(row))
            row.title->setFixedWidth(width);
    }
}

#include "moc_PPropertyGroupPanel.cpp"
