#include "widgets/ErrorConsoleWidget.h"

QString ErrorConsoleWidget::typeName() const
{
    return QStringLiteral("ErrorConsole");
}

void ErrorConsoleWidget::appendError(double tSec, const QString& id, const QString& text)
{
    appendEvent(tSec, id + QLatin1String(" : ") + (text.isEmpty() ? id : text));
}

void ErrorConsoleWidget::clearErrors()
{
    clearEvents();
}
