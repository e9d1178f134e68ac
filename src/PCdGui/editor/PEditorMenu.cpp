// SPDX-License-Identifier: MIT
#include <PCdGui/editor/PEditorMenu.h>

#include <PCdGui/editor/PPropertyEditor.h>
#include <PCdGui/text/PPropertyDisplay.h>

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyCheck.h>

#include <QLineEdit>
#include <QMenu>

namespace {

/// The line edit of a part, or null: a number field has one inside it.
QLineEdit* findLineEdit(QWidget* part) {
    auto* const line = qobject_cast<QLineEdit*>(part);
    return line != nullptr ? line
                           : part->findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
}

QMenu* createMenu(QWidget* part) {
    if (QLineEdit* const line = findLineEdit(part)) {
        QMenu* const menu = line->createStandardContextMenu();
        menu->addSeparator();
        return menu;
    }
    return new QMenu(part);
}

} // namespace

QMenu* PEditorMenu::create(PPropertyEditor* editor, QWidget* part) {
    QMenu* const menu = createMenu(part);
    menu->setToolTipsVisible(true);
    QAction* const reset = menu->addAction(tr("Reset to default"));
    reset->setObjectName(u"reset"_qs);
    const PDeviceProperty* const property = editor->property();
    if (property == nullptr || !property->defaultValue().isValid()) {
        reset->setEnabled(false);
        reset->setToolTip(tr("This setting has no default."));
        return menu;
    }
    const QVariant standard = property->defaultValue();
    const QString words = PPropertyDisplay::valueText(*property, editor->shownRange(), standard);
    reset->setText(tr("Reset to default (%1)").arg(words));
    const PStatus status = PPropertyCheck::check(*property, standard);
    reset->setEnabled(status.isOk());
    if (!status.isOk())
        reset->setToolTip(status.reason());
    QObject::connect(reset, &QAction::triggered, editor, &PPropertyEditor::resetToDefault);
    return menu;
}
