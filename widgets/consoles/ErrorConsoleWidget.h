#pragma once

#include "widgets/consoles/EventConsoleWidget.h"

// The device's error reports, one line each. What the configuration dialog changes counts from OK on.
class ErrorConsoleWidget : public EventConsoleWidget
{
    Q_OBJECT

public:
    explicit ErrorConsoleWidget(QWidget* parent = nullptr);

    QString typeName() const override;
    Events shownEvents() const override { return ErrorEvent; }
    /// Adds "[time] id : text"; the id stands for an empty text.
    void appendError(double tSec, const QString& id, const QString& text) override;
    void clearErrors() override;
};
