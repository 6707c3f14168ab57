#include "widgets/DashboardWidget.h"

#include <QEvent>
#include <QJsonArray>
#include <QJsonValue>

DashboardWidget::DashboardWidget(QWidget* parent)
    : QWidget(parent)
{}

QSize DashboardWidget::minimumCanvasSize() const { return minimumSizeHint().expandedTo(QSize(80, 60)); }

void DashboardWidget::setValueForSignal(const QString&, double value) { setValue(value); }

void DashboardWidget::setValueForSignalAt(const QString& name, double value, double)
{
    setValueForSignal(name, value);
}

bool DashboardWidget::supportsMultipleSignals() const { return false; }

bool DashboardWidget::usesSignalSelection() const { return true; }

QString DashboardWidget::signalName() const { return m_assignedSignals.value(0); }

QList<QString> DashboardWidget::assignedSignalList() const { return m_assignedSignals; }

void DashboardWidget::assignSignal(const QString& name) { DashboardWidget::assignSignals({name}); }

void DashboardWidget::assignSignals(const QList<QString>& names)
{
    m_assignedSignals = names;
    update();
    Q_EMIT assignmentChanged();
}

DashboardWidget::Events DashboardWidget::shownEvents() const { return {}; }

void DashboardWidget::showState(const QString&, const QString&, const QString&) {}

void DashboardWidget::appendError(double, const QString&, const QString&) {}

void DashboardWidget::clearErrors() {}

void DashboardWidget::appendMessage(double, const QString&) {}

void DashboardWidget::clearMessages() {}

void DashboardWidget::clearData() {}

void DashboardWidget::definitionsChanged() {}

void DashboardWidget::loadConfig(const QJsonObject& config)
{
    const QJsonValue entry = config.value(QLatin1String("signals"));
    if (!entry.isArray())
        return;
    QList<QString> names;
    const QJsonArray array = entry.toArray();
    for (const auto& name : array) {
        if (name.isString())
            names.append(name.toString());
    }
    assignSignals(names);
}

QJsonObject DashboardWidget::saveConfig() const
{
    return {{QStringLiteral("signals"), QJsonArray::fromStringList(m_assignedSignals)}};
}

void DashboardWidget::buildConfigUI(QFormLayout*, QWidget*) {}

void DashboardWidget::applyConfigUI() {}

// Whatever makes an update() ineffective, such as being hidden, leads to a painting when it ends.
void DashboardWidget::updateForValue()
{
    if (!m_updatePending)
        update();
    m_updatePending = true;
}

bool DashboardWidget::event(QEvent* event)
{
    if (event->type() == QEvent::Paint)
        m_updatePending = false;
    return QWidget::event(event);
}
