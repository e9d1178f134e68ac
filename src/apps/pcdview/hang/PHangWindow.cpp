// SPDX-License-Identifier: MIT
#include <apps/pcdview/hang/PHangWindow.h>

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

namespace {

constexpr int widthInLetters = 64;
constexpr std::chrono::milliseconds refreshEvery(200); // so that no second is left out

/// A text of several lines, as it is: some of it comes from another process.
QLabel* makeWrappedLabel(const char* name, const QString& text = {}) {
    auto* const label = new QLabel(text);
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QLabel* makeCallLabel() {
    QLabel* const label = makeWrappedLabel("call");
    label->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse); // the user may send it to the maker
    label->setFrameShape(QFrame::StyledPanel);
    label->setBackgroundRole(QPalette::Base);
    label->setForegroundRole(QPalette::Text);
    label->setAutoFillBackground(true);
    label->setMargin(label->fontMetrics().height() / 3);
    return label;
}

} // namespace

PHangWindow::PHangWindow(std::chrono::milliseconds endingTime)
    : m_endingTime(endingTime)
    , m_heading(makeWrappedLabel("heading", tr("The camera does not answer")))
    , m_call(makeCallLabel())
    , m_time(makeWrappedLabel("time"))
    , m_advice(makeWrappedLabel("advice"))
    , m_end(new QPushButton(tr("&End pcdview")))
    , m_wait(new QPushButton(tr("&Keep waiting"))) {
    setWindowTitle(u"pcdview"_qs);
    setWindowFlag(Qt::WindowStaysOnTopHint); // it belongs to a window that it cannot know
    m_end->setObjectName(u"end"_qs);
    m_end->setAutoDefault(false);
    m_wait->setObjectName(u"wait"_qs);
    m_wait->setDefault(true);
    makeLayout();
    m_wait->setFocus();
    connect(m_end, &QPushButton::clicked, this, &PHangWindow::requestEnd);
    connect(m_wait, &QPushButton::clicked, this, &QDialog::reject);
    connect(&m_tick, &QTimer::timeout, this, &PHangWindow::refresh);
    m_tick.start(refreshEvery);
}

void PHangWindow::makeLayout() {
    QFont bold = m_heading->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.2);
    m_heading->setFont(bold);
    auto* const icon = new QLabel;
    const int size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(size));
    auto* const buttons = new QDialogButtonBox;
    buttons->addButton(m_end, QDialogButtonBox::DestructiveRole);
    buttons->addButton(m_wait, QDialogButtonBox::RejectRole);

    auto* const grid = new QGridLayout(this);
    grid->addWidget(icon, 0, 0, 5, 1, Qt::AlignTop);
    grid->setColumnMinimumWidth(1, widthInLetters * fontMetrics().averageCharWidth());
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(5, 1);
    grid->setHorizontalSpacing(2 * grid->horizontalSpacing());
    grid->setVerticalSpacing(3 * grid->verticalSpacing() / 2);
    const QString reason =
        tr("pcdview waits until this call to the camera returns; its window cannot react before:");
    int row = 0;
    for (QLabel* label : {m_heading, makeWrappedLabel("reason", reason), m_call, m_time, m_advice})
        grid->addWidget(label, row++, 1);
    grid->addWidget(buttons, row + 1, 0, 1, 2);
}

void PHangWindow::setCall(const PCallWatchdog::Call& call) {
    m_since = Clock::now() - call.time;
    m_call->setText(call.text);
    refresh();
}

void PHangWindow::requestEnd() {
    if (!m_endRequest) {
        m_endRequest = Clock::now();
        m_heading->setText(tr("pcdview is ending"));
        m_end->setText(tr("&End at once"));
        m_wait->setText(tr("&Close"));
        refresh();
    }
    emit endRequested();
}

void PHangWindow::refresh() {
    const auto time = std::chrono::floor<std::chrono::seconds>(Clock::now() - m_since);
    m_time->setText(tr("So far it has taken %1.").arg(timeText(time)));
    m_advice->setText(adviceText());
}

QString PHangWindow::timeText(std::chrono::seconds time) {
    const auto number = [](auto count) { return QString::number(count); };
    if (time < std::chrono::minutes(1))
        return tr("%1 s").arg(number(time.count()));
    if (time < std::chrono::hours(1))
        return tr("%1 min %2 s").arg(number(time.count() / 60), number(time.count() % 60));
    return tr("%1 h %2 min").arg(number(time.count() / 3600), number(time.count() / 60 % 60));
}

QString PHangWindow::adviceText() const {
    if (!m_endRequest)
        return tr("Often the camera answers after all, and this message disappears. If not, check "
                  "its cable: unplugging it may end the call. When you end pcdview, recordings and "
                  "pictures are completed before.");
    const auto left =
        std::chrono::ceil<std::chrono::seconds>(*m_endRequest + m_endingTime - Clock::now());
    const QString progress =
        left.count() > 0
            ? tr("If the call does not return within %1, pcdview completes recordings and pictures "
                 "and ends without the camera.")
                  .arg(timeText(left))
            : tr("Recordings and pictures are being completed; then pcdview ends.");
    return progress + u' ' + tr("If you end it at once, they stay incomplete.");
}

#include "moc_PHangWindow.cpp"
