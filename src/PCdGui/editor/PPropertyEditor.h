// SPDX-License-Identifier: MIT
#pragma once

#include <PCdGui/editor/PCoalescingSetter.h>
#include <PCdGui/editor/PDeviceWatch.h>
#include <PCdGui/text/PDeviceTexts.h>

#include <PCore/PExport.h>

#include <QPointer>
#include <QTimer>
#include <QVariant>
#include <QWidget>

#include <chrono>

/// An editor for one property: it shows the property's value, follows changes, and sends what the
/// user chooses. After a refusal it shows the value that the device kept; a value that the device
/// did not report is read again whenever the editor appears, and then from time to time. Without
/// the device or the property it is disabled. The GUI thread.
class PCD_TEST_EXPORT PPropertyEditor : public QWidget {
    Q_OBJECT

public:
    /// Sends the pending value, unless there is a condition.
    ~PPropertyEditor() override;

    /// Null once it has been deleted.
    PDeviceProperty* property() const { return m_property; }
    /// True if the editor itself shows the property's title, so that none is needed beside it.
    virtual bool showsTitle() const { return false; }
    /// Called for a click on the title beside the editor: takes the focus.
    virtual void touch();
    /// Shows the property's title, its description and the titles of its choices in a language that
    /// was chosen after the property was created. A choice without a title there keeps its own.
    void setTexts(const PDeviceTexts::Texts& texts);
    /// The property's range, with the displayed titles of choices. Invalid without the property.
    QVariant shownRange() const;
    /// Sends the property's default.
    void resetToDefault();
    /// Called before another value than the property's is sent; if it returns false, the editor
    /// shows the property's value again.
    void setCondition(const PCoalescingSetter::Condition& condition);

signals:
    /// The device refused the value that the user chose, and kept the value `kept` (as text; empty
    /// if it has none).
    void refused(const QString& title, const QString& kept);

protected:
    explicit PPropertyEditor(PDeviceProperty* property);

    /// Must be called at the end of a derived constructor: lays out the control, names it, and
    /// shows the property. `focus` is the widget that takes the focus.
    void begin(QWidget* control, QWidget* focus);
    /// Shows a value and range; sends nothing. The value is invalid if the device did not report
    /// it.
    virtual void showProperty(const QVariant& value, const QVariant& range) = 0;
    /// Shows the title and the editor's own texts in the current language. Not called without the
    /// property.
    virtual void showWords() {}
    /// The title to show.
    const QString& title() const { return m_texts.title; }
    /// Sends what the user chose, at most once per turn of the event loop.
    void send(const QVariant& value);

    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void follow();
    void refresh();
    bool hasValue() const;
    bool canRead() const;
    void readAgain();
    void readAgainLater();
    void updateUsable();
    void updateToolTip();
    void onPropertyDestroyed();
    void onRefused();
    void openMenu(QWidget* part, const QPoint& globalPosition);

    QPointer<PDeviceProperty> m_property;
    PDeviceTexts::Texts m_texts;
    PDeviceWatch m_watch;
    PCoalescingSetter m_setter;
    bool m_isKnown = true; ///< as the tool tip says
    QTimer m_reading;      ///< while the value is unread
    std::chrono::seconds m_pause;
};
