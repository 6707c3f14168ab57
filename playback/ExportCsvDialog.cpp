#include "playback/ExportCsvDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr double kMaxSampleHz = 1000.0;
constexpr QSize kInitialSize(420, 460);

} // namespace

ExportCsvDialog::ExportCsvDialog(const QStringList& keys, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Export CSV"));
    auto* layout = new QVBoxLayout(this);
    setupSignals(keys, layout);
    setupOptions(layout);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setToolTip(tr("Choose the file and export"));
    buttons->button(QDialogButtonBox::Cancel)->setToolTip(tr("Export nothing"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    resize(kInitialSize);
}

void ExportCsvDialog::setupSignals(const QStringList& keys, QVBoxLayout* layout)
{
    auto* label = new QLabel(tr("Select signals to export:"), this);
    layout->addWidget(label);
    m_signals = new QListWidget(this);
    m_signals->setSelectionMode(QAbstractItemView::MultiSelection);
    m_signals->setUniformItemSizes(true); // else a recording with very many keys takes long to open
    m_signals->setTextElideMode(Qt::ElideMiddle);
    m_signals->setToolTip(tr("A click or the space bar selects a signal, another one takes it back"));
    m_signals->setAccessibleName(tr("Signals to export"));
    m_signals->addItems(keys);
    label->setBuddy(m_signals);
    layout->addWidget(m_signals, 1);
}

void ExportCsvDialog::setupOptions(QVBoxLayout* layout)
{
    auto* row = new QHBoxLayout;
    auto* label = new QLabel(tr("Sample rate (Hz, 0 = native):"), this);
    m_sampleHz = new QDoubleSpinBox(this);
    m_sampleHz->setRange(0.0, kMaxSampleHz);
    m_sampleHz->setDecimals(2);
    m_sampleHz->setValue(0.0);
    m_sampleHz->setToolTip(tr("Rows per second, values held in between; 0 writes a row per recorded line"));
    m_sampleHz->setAccessibleName(tr("Sample rate in hertz, 0 for native"));
    label->setBuddy(m_sampleHz);
    row->addWidget(label);
    row->addWidget(m_sampleHz, 1);
    layout->addLayout(row);

    m_applyMappings = new QCheckBox(tr("Apply mappings (physical units)"), this);
    m_applyMappings->setToolTip(tr("Write physical values and display names instead of raw values and keys"));
    layout->addWidget(m_applyMappings);
}

QStringList ExportCsvDialog::selectedSignals() const
{
    QStringList keys;
    const QList<QListWidgetItem*> items = m_signals->selectedItems();
    for (const QListWidgetItem* item : items)
        keys.append(item->text());
    return keys;
}

double ExportCsvDialog::sampleHz() const { return m_sampleHz->value(); }

bool ExportCsvDialog::applyMappings() const { return m_applyMappings->isChecked(); }
