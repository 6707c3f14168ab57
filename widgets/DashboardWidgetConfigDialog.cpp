#include "widgets/DashboardWidgetConfigDialog.h"

#include "definitions/DashboardSignalParser.h"
#include "definitions/numbers/SignalName.h"
#include "widgets/DashboardWidget.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QListWidget>
#include <QVBoxLayout>

namespace {

constexpr int kMinimumWidth = 380;
constexpr int kListRows = 10;
constexpr int kPopupRows = 20;
constexpr int kChoiceCharacters = 24;

QList<DashboardSignal> catalogueSignals()
{
    return gSignalParser ? gSignalParser->signalList() : QList<DashboardSignal>();
}

} // namespace

DashboardWidgetConfigDialog::DashboardWidgetConfigDialog(DashboardWidget* widget, QWidget* parent)
    : QDialog(parent)
    , m_widget(widget)
{
    setWindowTitle(tr("Configure Widget"));
    setMinimumWidth(kMinimumWidth);
    auto* layout = new QVBoxLayout(this);
    m_form = new QFormLayout;
    layout->addLayout(m_form);

    if (m_widget) {
        connect(m_widget, &QObject::destroyed, this, &QDialog::reject);
        setupSignalRow();
        DashboardWidgetConfigDialog::addWidgetSpecificOptions();
    }

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &DashboardWidgetConfigDialog::applyConfig);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    QLayoutItem* firstField = m_form->itemAt(0, QFormLayout::FieldRole);
    if (firstField && firstField->widget())
        firstField->widget()->setFocus();
}

void DashboardWidgetConfigDialog::addWidgetSpecificOptions() { m_widget->buildConfigUI(m_form, this); }

void DashboardWidgetConfigDialog::applyConfig()
{
    if (!m_widget)
        return;
    if (m_signalList) {
        // A list that nobody touched says nothing: what is not in the catalogue, and the order, must not go.
        const QList<QString> names = selectedSignals();
        if (names != m_selectedAtFirst)
            m_widget->assignSignals(names);
    } else if (m_signalChoice) {
        QString name = m_signalChoice->currentData().toString();
        if (name.isEmpty())
            name = m_signalChoice->currentText();
        const QString before = m_widget->assignedSignalList().value(0);
        if (canonical(before) == name)
            name = before; // with the text behind its colon
        if (!name.isEmpty())
            m_widget->assignSignals({name});
    }
    m_widget->applyConfigUI();
}

QList<QString> DashboardWidgetConfigDialog::selectedSignals() const
{
    QList<QString> names;
    const QList<QListWidgetItem*> selected = m_signalList->selectedItems();
    for (const QListWidgetItem* item : selected)
        names.append(item->data(Qt::UserRole).toString());
    return names;
}

void DashboardWidgetConfigDialog::setupSignalRow()
{
    if (m_widget->supportsMultipleSignals())
        setupSignalList();
    else if (m_widget->usesSignalSelection())
        setupSignalChoice();
}

void DashboardWidgetConfigDialog::setupSignalList()
{
    m_signalList = new QListWidget(this);
    m_signalList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_signalList->setAccessibleName(tr("Signals"));
    m_signalList->setToolTip(tr("The signals that the widget shows; Ctrl and Shift select several"));
    m_signalList->setMinimumHeight(kListRows * (fontMetrics().height() + 2));

    const QList<QString> assigned = m_widget->assignedSignalList();
    const QList<DashboardSignal> all = catalogueSignals();
    for (const DashboardSignal& each : all) {
        auto* item = new QListWidgetItem(QStringLiteral("%1 (%2)").arg(each.enumName, each.displayName));
        item->setData(Qt::UserRole, each.enumName);
        m_signalList->addItem(item);
        item->setSelected(assigned.contains(each.enumName));
    }
    m_selectedAtFirst = selectedSignals();
    m_form->addRow(tr("Signals:"), m_signalList);
}

void DashboardWidgetConfigDialog::setupSignalChoice()
{
    m_signalChoice = new QComboBox(this);
    m_signalChoice->setAccessibleName(tr("Signal"));
    m_signalChoice->setToolTip(tr("The signal that the widget shows"));
    m_signalChoice->setMaxVisibleItems(kPopupRows);
    // A display name of any length must not widen the dialog beyond the screen.
    m_signalChoice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_signalChoice->setMinimumContentsLength(kChoiceCharacters);
    m_signalChoice->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);

    const QList<DashboardSignal> all = catalogueSignals();
    for (const DashboardSignal& each : all)
        m_signalChoice->addItem(QStringLiteral("%1 : %2").arg(each.enumName, each.displayName),
                                each.enumName);

    const QList<QString> assigned = m_widget->assignedSignalList();
    if (!assigned.isEmpty()) {
        int index = m_signalChoice->findData(assigned.first());
        if (index < 0)
            index = m_signalChoice->findText(assigned.first(), Qt::MatchContains);
        if (index < 0) // an entry with a text behind its colon; OK must not put another signal in its place
            index = m_signalChoice->findData(canonical(assigned.first()));
        if (index >= 0)
            m_signalChoice->setCurrentIndex(index);
    }
    m_form->addRow(tr("Signal:"), m_signalChoice);
}
