// SPDX-License-Identifier: MIT
#pragma once

#include <PCdGui/PCoalescingSetter.h>
#include <PCdGui/PDeviceTexts.h>
#include <PCdGui/PDeviceWatch.h>

#include <QPointer>
#include <QVariant>
#include <QWidget>

/// An editor for one property: it shows what the property has, follows it, and sends what the user
/// chooses. What the device refuses is shown as it really is. Without the device, or the property,
/// it is disabled. The GUI thread.
class PPropertyEditor : public QWidget {
    Q_OBJECT

public:
    /// Sends what still waits to be sent.
    ~PPropertyEditor() override;

    /// Null once it has been deleted.
    PDeviceProperty* property() const { return m_property; }
    /// True if the editor itself shows the property's title, and needs none beside it.
    virtual bool showsTitle() const { return false; }
    /// What a click on the title beside the editor does: it takes the focus.
    virtual void touch();
    /// Shows the property's title, its description and the titles of its choices in a language that
    /// was chosen after the property was made. A choice that has no title there keeps its own.
    void setTexts(const PDeviceTexts::Texts& texts);
    /// The property's range; choices have the titles that are shown. Invalid without the property.
    QVariant shownRange() const;
    /// Sends the property's default.
    void resetToDefault();

signals:
    /// The device refused what the user had chosen, and kept this, in words; empty if it has none.
    void refused(const QString& title, const QString& kept);

protected:
    explicit PPropertyEditor(PDeviceProperty* property);

    /// To be called at the end of a constructor: lays out the control, names it, and shows the
    /// property. `focus` is what takes the focus.
    void begin(QWidget* control, QWidget* focus);
    /// Shows a value and range, without sending anything.
    virtual void showProperty(const QVariant& value, const QVariant& range) = 0;
    /// Shows the title and the editor's own words in the language of the moment. Not called without
    /// the property.
    virtual void showWords() {}
    /// The title to show.
    const QString& title() const { return m_texts.title; }
    /// Sends what the user has chosen, at most once a turn of the event loop.
    void send(const QVariant& value);

    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void follow();
    void refresh();
    void updateUsable();
    void updateToolTip();
    void onPropertyDestroyed();
    void onRefused();
    void openMenu(QWidget* part, const QPoint& globalPosition);

    QPointer<PDeviceProperty> m_property;
    PDeviceTexts::Texts m_texts;
    PDeviceWatch m_watch;
    PCoalescingSetter m_setter;
};
