#pragma once

#include "widgets/consoles/EventConsoleWidget.h"

// The device's free-text messages, one line each. What the configuration dialog changes counts at once, so
// Cancel does not undo it.
class MessagesConsoleWidget : public EventConsoleWidget
{
    Q_OBJECT

public:
    explicit MessagesConsoleWidget(QWidget* parent = nullptr);

    QString typeName() const override;
    void buildConfigUI(QFormLayout* form, QWidget* parent) override;
    void applyConfigUI() override {}
    Events shownEvents() const override { return MessageEvent; }
    /// Adds "[time] text".
    void appendMessage(double tSec, const QString& text) override;
    void clearMessages() override;
};
