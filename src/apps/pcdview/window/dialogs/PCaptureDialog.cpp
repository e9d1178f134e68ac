// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/dialogs/PCaptureDialog.h>

#include <apps/pcdview/capture/PCaptureFolder.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

constexpr int leastDialogWidth = 460;

} // namespace

PCaptureDialog::PCaptureDialog(const QString& camera, QWidget* parent)
    : QDialog(parent)
    , m_camera(camera)
    , m_pattern(PCaptureFolder::pattern())
    , m_folder(new QLineEdit(PCaptureFolder::path()))
    , m_names(new QLineEdit(m_pattern.text()))
    , m_ending(new QComboBox)
    , m_example(new QLabel) {
    setWindowTitle(tr("Picture and recording files"));
    setMinimumWidth(leastDialogWidth);
    makeFields();
    makeLayout();
    for (QLineEdit* field : {m_folder, m_names})
        connect(field, &QLineEdit::textChanged, this, &PCaptureDialog::showExample);
    connect(m_ending, &QComboBox::currentIndexChanged, this, &PCaptureDialog::showExample);
    showExample();
}

void PCaptureDialog::makeFields() {
    m_folder->setObjectName(u"captureFolderField"_qs);
    m_names->setObjectName(u"captureNamesField"_qs);
    m_names->setToolTip(tr("{camera}, {date} and {time} are replaced by camera, date and time, {n} "
                           "by the first number that gives an unused name."));
    m_ending->setObjectName(u"captureEndingField"_qs);
    m_ending->addItem(u"PNG"_qs, u".png"_qs);
    m_ending->addItem(u"TIFF"_qs, u".tif"_qs);
    m_ending->setCurrentIndex(m_ending->findData(PCaptureFolder::stillEnding()));
    m_example->setObjectName(u"captureExample"_qs);
    m_example->setWordWrap(true);
    m_example->setTextFormat(Qt::PlainText);
}

void PCaptureDialog::makeLayout() {
    auto* const browse = new QPushButton(tr("Browse…"));
    connect(browse, &QPushButton::clicked, this, &PCaptureDialog::browse);
    auto* const folder = new QHBoxLayout;
    folder->addWidget(m_folder, 1);
    folder->addWidget(browse);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    connect(buttons, &QDialogButtonBox::accepted, this, &PCaptureDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* const form = new QFormLayout(this);
    form->addRow(tr("Folder:"), folder);
    form->addRow(tr("File names:"), m_names);
    form->addRow(tr("Save stills as:"), m_ending);
    form->addRow(tr("Next name:"), m_example);
    form->addRow(buttons);
}

void PCaptureDialog::browse() {
    const QString folder =
        QFileDialog::getExistingDirectory(this, tr("Capture folder"), m_folder->text());
    if (!folder.isEmpty())
        m_folder->setText(folder);
}

void PCaptureDialog::showExample() {
    PStatus status = m_pattern.setText(m_names->text());
    if (status.isOk() && !QDir::isAbsolutePath(m_folder->text()))
        status = PStatus::failure(tr("\"%1\" is not an absolute path").arg(m_folder->text()));
    m_ok->setEnabled(status.isOk());
    m_example->setText(status.isOk() ? m_pattern.name(m_camera, QDateTime::currentDateTime(), 1) +
                                           m_ending->currentData().toString()
                                     : status.reason());
}

void PCaptureDialog::accept() {
    PCaptureFolder::setPath(m_folder->text());
    PCaptureFolder::setPattern(m_pattern);
    PCaptureFolder::setStillEnding(m_ending->currentData().toString());
    QDialog::accept();
}

#include "moc_PCaptureDialog.cpp"
