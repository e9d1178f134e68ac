// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/panels/PLogPanel.h>

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

namespace {

constexpr int refreshEveryMs = 500;

} // namespace

PLogPanel::PLogPanel(std::shared_ptr<PMemoryLogSink> sink, QWidget* parent)
    : QWidget(parent)
    , m_sink(std::move(sink))
    , m_text(new QPlainTextEdit) {
    m_text->setObjectName(u"logText"_qs);
    m_text->setReadOnly(true);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->setPlaceholderText(tr("The log is empty."));
    auto* const clear = new QPushButton(tr("Clear"));
    connect(clear, &QPushButton::clicked, this, [this] {
        m_sink->clear();
        refresh();
    });
    auto* const column = new QVBoxLayout(this);
    column->addWidget(m_text, 1);
    column->addWidget(clear, 0, Qt::AlignRight);
    m_refresh.setInterval(refreshEveryMs);
    connect(&m_refresh, &QTimer::timeout, this, &PLogPanel::refresh);
}

void PLogPanel::showEvent(QShowEvent*) {
    refresh();
    m_refresh.start();
}

void PLogPanel::hideEvent(QHideEvent*) {
    m_refresh.stop();
}

void PLogPanel::refresh() {
    QStringList lines;
    for (const PLogRecord& record : m_sink->records())
        lines.append(formatLogRecord(record));
    const QString text = lines.join(u'\n');
    if (text == m_text->toPlainText())
        return;
    m_text->setPlainText(text);
    m_text->verticalScrollBar()->setValue(m_text->verticalScrollBar()->maximum());
}

#include "moc_PLogPanel.cpp"
