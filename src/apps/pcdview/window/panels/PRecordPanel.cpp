// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/panels/PRecordPanel.h>

#include <apps/pcdview/capture/PRecordings.h>

#include <PCdGui/PWheelGuard.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTime>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

constexpr int mostFrames = 1'000'000;
constexpr double mostSeconds = 7 * 24 * 3600;
constexpr double shortestSeconds = 0.1;
constexpr int barSteps = 1000;

using End = PRecordSettings::End;

QDoubleSpinBox* secondsField(double value) {
    auto* const field = new QDoubleSpinBox;
    field->setRange(shortestSeconds, mostSeconds);
    field->setDecimals(1);
    field->setSuffix(PRecordPanel::tr(" s"));
    field->setValue(value);
    return field;
}

/// With places to break lines in the names of files: a long name would widen the panel.
QString breakable(QString text) {
    const QChar zeroWidthSpace(0x200b);
    return text.replace(u'_', u'_' + QString(zeroWidthSpace));
}

QString toClockText(PRecordSchedule::Duration time) {
    const auto total = std::chrono::round<std::chrono::seconds>(time).count();
    const auto twoDigits = [](auto number) {
        return QString::number(number).rightJustified(2, u'0');
    };
    return u"%1:%2:%3"_qs.arg(QString::number(total / 3600), twoDigits(total / 60 % 60),
                              twoDigits(total % 60));
}

} // namespace

PRecordPanel::PRecordPanel(PRecordings& recordings, QWidget* parent)
    : QWidget(parent)
    , m_recordings(recordings)
    , m_end(new QComboBox)
    , m_frames(new QSpinBox)
    , m_timeLapse(new QCheckBox(tr("Time-lapse, one frame every")))
    , m_format(new QComboBox)
    , m_button(new QPushButton)
    , m_bar(new QProgressBar)
    , m_text(new QLabel) {
    makeFields(PRecordSettings::remembered());
    makeLayout();
    new PWheelGuard(this); // the dock scrolls
    connect(m_end, &QComboBox::currentIndexChanged, this, &PRecordPanel::showFields);
    connect(m_timeLapse, &QCheckBox::toggled, m_interval, &QWidget::setEnabled);
    connect(m_button, &QPushButton::clicked, this, [this] {
        if (PRecording* const recording = m_recordings.of(m_camera))
            recording->stop();
        else
            emit startRequested();
    });
    connect(&recordings, &PRecordings::changed, this, &PRecordPanel::showProgress);
    connect(&recordings, &PRecordings::finished, this, &PRecordPanel::showMessage);
    showFields();
    showProgress();
}

void PRecordPanel::makeFields(const PRecordSettings& settings) {
    m_end->addItems({tr("Number of frames"), tr("Duration"), tr("Until stopped")});
    m_end->setCurrentIndex(int(settings.end));
    m_end->setObjectName(u"recordEnd"_qs);
    m_frames->setRange(1, mostFrames);
    m_frames->setValue(settings.frames);
    m_frames->setObjectName(u"recordFrames"_qs);
    m_seconds = secondsField(settings.seconds);
    m_timeLapse->setChecked(settings.isTimeLapse);
    m_interval = secondsField(settings.intervalSeconds);
    m_interval->setEnabled(settings.isTimeLapse);
    m_format->addItems({tr("One file (OME-TIFF)"), tr("TIFF files"), tr("PNG files"),
                        tr("One folder (OME-Zarr)")});
    m_format->setCurrentIndex(int(settings.format));
    m_format->setObjectName(u"recordFormat"_qs);
    m_button->setObjectName(u"recordButton"_qs);
    m_text->setObjectName(u"recordText"_qs);
    m_bar->setObjectName(u"recordBar"_qs);
    m_text->setWordWrap(true);
    m_bar->setMaximum(barSteps);
    m_bar->setTextVisible(false);
}

void PRecordPanel::makeLayout() {
    // At the top, where the progress is visible even if the window has no room for the whole panel.
    // Not in the form, which does not give a text the height that it needs at this width.
    auto* const column = new QVBoxLayout(this);
    column->addWidget(m_button);
    column->addWidget(m_bar);
    column->addWidget(m_text);
    auto* const form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    column->addLayout(form);
    column->addStretch();
    form->addRow(tr("Record:"), m_end);
    form->addRow(tr("Frames:"), m_frames);
    form->addRow(tr("Duration:"), m_seconds);
    form->addRow(m_timeLapse);
    form->addRow(QString(), m_interval);
    form->addRow(tr("As:"), m_format);
}

PRecordSettings PRecordPanel::settings() const {
    PRecordSettings settings;
    settings.end = End(m_end->currentIndex());
    settings.frames = m_frames->value();
    settings.seconds = m_seconds->value();
    settings.isTimeLapse = m_timeLapse->isChecked();
    settings.intervalSeconds = m_interval->value();
    settings.format = PRecordSettings::Format(m_format->currentIndex());
    return settings;
}

void PRecordPanel::setCamera(PViewCamera* camera) {
    m_camera = camera;
    showProgress();
}

void PRecordPanel::showMessage(const QString& camera, const QString& message) {
    m_messages.insert(camera, message);
    showProgress();
}

void PRecordPanel::showFields() {
    m_frames->setEnabled(m_end->currentIndex() == int(End::AfterFrames));
    m_seconds->setEnabled(m_end->currentIndex() == int(End::AfterTime));
}

void PRecordPanel::showProgress() {
    const PRecording* const here = m_recordings.of(m_camera);
    const PStatus ready = m_camera == nullptr ? PStatus::failure({}) : m_camera->readiness();
    m_button->setText(here != nullptr ? tr("Stop recording") : tr("Record"));
    const bool isPossible = here != nullptr || ready.isOk();
    m_button->setEnabled(isPossible);
    m_button->setToolTip(
        isPossible || ready.reason().isEmpty() ? QString() : tr("Not now: %1").arg(ready.reason()));
    m_bar->setVisible(here != nullptr);
    if (here != nullptr)
        showBar(*here);
    else
        m_inBar = nullptr;
    for (const PRecording* recording : m_recordings.running())
        m_messages.remove(recording->cameraId());
    const QString inFront = m_camera == nullptr ? QString() : m_camera->identity().id;
    m_text->setText(breakable(texts(inFront).join(u"\n"_qs)));
    m_text->setVisible(!m_text->text().isEmpty());
}

void PRecordPanel::showBar(const PRecording& recording) {
    const std::optional<double> share = completedShare(recording.progress());
    // Without a planned end it shows activity only.
    m_bar->setMaximum(share ? barSteps : 0);
    // It does not go back while a frame of a time-lapse waits.
    const bool isSame = std::exchange(m_inBar, &recording) == &recording;
    m_bar->setValue(std::max(isSame ? m_bar->value() : 0, int(share.value_or(0) * barSteps)));
}

std::optional<double> PRecordPanel::completedShare(const PFrameRecorder::Progress& progress) {
    const PRecordTally& tally = progress.tally;
    const quint64 done = tally.written + tally.failed + tally.refused;
    const quint64 taken = done + tally.waiting;
    if (!progress.share || taken == 0)
        return progress.share;
    return *progress.share * double(done) / double(taken);
}

/// The texts of all recordings, that of the camera in front first.
QStringList PRecordPanel::texts(const QString& inFront) const {
    QStringList texts;
    const auto add = [&](const QString& camera, const QString& text) {
        texts.insert(camera == inFront ? 0 : texts.size(), text);
    };
    for (const PRecording* recording : m_recordings.running())
        add(recording->cameraId(), progressText(*recording));
    for (auto message = m_messages.begin(); message != m_messages.end(); ++message) {
        const bool isInFront = message.key() == inFront;
        add(message.key(), isInFront ? *message : message.key() + u'\n' + *message);
    }
    return texts;
}

QString PRecordPanel::progressText(const PRecording& recording) {
    const PFrameRecorder::Progress progress = recording.progress();
    const PRecordTally& tally = progress.tally;
    QString text = recording.cameraId() + u'\n' +
                   tr("Written: %1, waiting: %2, lost: %3")
                       .arg(QString::number(tally.written), QString::number(tally.waiting),
                            QString::number(tally.failed + tally.refused));
    if (progress.isOver)
        return text + u'\n' + tr("Finishing the file…");
    if (progress.timeLeft)
        text += u'\n' + tr("Time left: %1").arg(toClockText(*progress.timeLeft));
    if (const auto silence = recording.silence())
        text += u'\n' + tr("No frame has arrived for %1 s.").arg(silence->count());
    return text;
}

#include "moc_PRecordPanel.cpp"
