#include "widgets/consoles/MessagesConsoleWidget.h"

MessagesConsoleWidget::MessagesConsoleWidget(QWidget* parent)
    : EventConsoleWidget(tr("No messages"), parent)
{}

QString MessagesConsoleWidget::typeName() const { return QStringLiteral("MessagesConsole"); }

void MessagesConsoleWidget::buildConfigUI(QFormLayout* form, QWidget* parent)
{
    EventConsoleWidget::buildConfigUI(form, parent);
    connect(maxLinesEditor(), &QSpinBox::valueChanged, this, &MessagesConsoleWidget::setMaxLines);
    connect(autoScrollEditor(), &QCheckBox::toggled, this, &MessagesConsoleWidget::setAutoScroll);
}

void MessagesConsoleWidget::appendMessage(double tSec, const QString& text) { appendEvent(tSec, text); }

void MessagesConsoleWidget::clearMessages() { clearEvents(); }
