// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>

/// Base of the plugin's panels: makes signals during a panel's destruction harmless, and updates
/// texts when the program's language changes. Has no Q_OBJECT, so that style sheets of the host see
/// a QWidget. The GUI thread.
class PTPanel : public QWidget {
public:
    /// An empty panel, to be filled with controls.
    explicit PTPanel(QWidget* parent = nullptr);
    ~PTPanel() override;

    /// Null once the panel's destruction has begun, see endLife(). A QPointer to the panel becomes
    /// null only after its controls are destroyed and destroyed() has been emitted.
    QPointer<QObject> life() const;

    /// Wraps a slot so that it does nothing once the panel's destruction has begun. It takes all
    /// arguments of its signal.
    template <typename Reaction>
    auto whileAlive(Reaction reaction) const {
        return [alive = life(), reaction](const auto&... arguments) {
            if (alive)
                reaction(arguments...);
        };
    }

    /// Sets the function that is called whenever the program's language changes.
    void setRetranslation(std::function<void()> setTexts);

protected:
    /// Begins the panel's destruction. Must be the first statement in the destructor of each
    /// derived class with members, which are destroyed before this class's destructor runs.
    void endLife() { m_life.reset(); }

    void changeEvent(QEvent* event) override;

private:
    std::unique_ptr<QObject> m_life;
    std::function<void()> m_setTexts;
};
