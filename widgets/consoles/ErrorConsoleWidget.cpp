#include "widgets/consoles/ErrorConsoleWidget.h"

ErrorConsoleWidget::ErrorConsoleWidget(QWidget* parent)
    : EventConsoleWidget(tr("No errors"), parent)
{}

QString ErrorConsoleWidget::typeName() const { return QStringLiteral("ErrorConsole"); }

void ErrorConsoleWidget::appendError(double tSec, const QString& id, const QString& text)
{
    appendEvent(tSec, id + QLatin1String(" : ") + (text.isEmpty() ? id : text));
}

void ErrorConsoleWidget::clearErrors() { clearEvents(); }
