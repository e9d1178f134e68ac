// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>

/// What the panels of this plugin have in common: signals that come while a panel is being
/// destroyed do no harm, and texts follow the program's language. Without a meta-object of its own:
/// to a style sheet of the host it is a QWidget. The GUI thread.
class PTPanel : public QWidget {
public:
    /// An empty panel, to be filled with controls.
    explicit PTPanel(QWidget* parent = nullptr);
    ~PTPanel() override;

    /// Null as soon as the panel's destruction has begun: see endLife(). A QPointer to the panel
    /// itself is null only after its controls are gone and destroyed() has been emitted.
    QPointer<QObject> life() const;

    /// The reaction, made a slot that does nothing once the panel's destruction has begun. It takes
    /// all arguments of its signal.
    template <typename Reaction>
    auto whileAlive(Reaction reaction) const {
        return [alive = life(), reaction](const auto&... arguments) {
            if (alive)
                reaction(arguments...);
        };
    }

    /// Calls this whenever the program's language has changed.
    void setRetranslation(std::function<void()> setTexts);

protected:
    /// Begins the panel's destruction. The first statement in the destructor of each derived class
    /// that has members: those are gone before this class's own destructor runs.
    void endLife() { m_life.reset(); }

    void changeEvent(QEvent* event) override;

private:
    std::unique_ptr<QObject> m_life;
    std::function<void()> m_setTexts;
};
