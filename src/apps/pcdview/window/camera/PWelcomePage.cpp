// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/camera/PWelcomePage.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int textWidth = 560;

QString asList(const QStringList& points) {
    QString html;
    for (const QString& point : points)
        html += u"<li style=\"margin-bottom: 6px\">"_qs + point + u"</li>"_qs;
    return u"<ul>"_qs + html + u"</ul>"_qs;
}

} // namespace

PWelcomePage::PWelcomePage(QWidget* parent)
    : QWidget(parent)
    , m_title(new QLabel)
    , m_text(new QLabel) {
    setObjectName(u"welcome"_qs);
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.8);
    m_title->setFont(large);
    m_text->setWordWrap(true);
    m_text->setMaximumWidth(textWidth);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* const search = new QPushButton(tr("Search again"));
    connect(search, &QPushButton::clicked, this, &PWelcomePage::searchRequested);
    auto* const simulate = new QPushButton(tr("Try it with simulated cameras"));
    connect(simulate, &QPushButton::clicked, this, &PWelcomePage::simulationRequested);
    m_simulate = simulate;
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(search);
    buttons->addWidget(simulate);
    buttons->addStretch();
    auto* const column = new QVBoxLayout;
    column->addStretch();
    column->addWidget(m_title);
    column->addSpacing(12);
    column->addWidget(m_text);
    column->addSpacing(12);
    column->addLayout(buttons);
    column->addStretch();
    auto* const row = new QHBoxLayout(this);
    row->addStretch();
    row->addLayout(column, 100); // all the width there is, up to the text's maximum
    row->addStretch();
}

void PWelcomePage::setSituation(const Situation& situation) {
    m_simulate->setVisible(!situation.isSimulated);
    if (situation.camerasPresent > 0) {
        m_title->setText(tr("No camera is open"));
        m_text->setText(tr("Double-click a camera in the list to open it."));
        return;
    }
    m_title->setText(tr("No camera found"));
    const bool isSimulated = situation.isSimulated && situation.problem.isEmpty();
    m_text->setText(asList(isSimulated ? adviceOfScene() : adviceFor(situation)));
}

/// Checking the cable does not help with simulated cameras.
QStringList PWelcomePage::adviceOfScene() {
    return {tr("Simulated cameras are in use, and none in the scene is plugged in."),
            tr("Start the program with another scene: pcdview --scene FILE. Without this option "
               "there are two cameras.")};
}

QStringList PWelcomePage::adviceFor(const Situation& situation) {
    QStringList points;
    if (!situation.problem.isEmpty())
        points.append(situation.problem.toHtmlEscaped());
    points.append(tr("Connect the camera, preferably directly to a USB 3 port of the computer. It "
                     "will appear here automatically."));
    points.append(tr("If it is connected, another program may be using it, or you may not have "
                     "permission to use it. The camera maker's installer grants this permission "
                     "(with a udev rule); reconnect the camera afterwards."));
    if (!situation.sdk.isEmpty())
        points.append(tr("Camera library in use: %1").arg(situation.sdk.toHtmlEscaped()));
    return points;
}

#include "moc_PWelcomePage.cpp"
