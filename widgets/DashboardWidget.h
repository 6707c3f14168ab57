#pragma once

#include <QJsonObject>
#include <QList>
#include <QSize>
#include <QString>
#include <QWidget>

class QEvent;
class QFormLayout;

// The base of everything that can stand on the dashboard. It fixes how the rest of the program talks to a
// widget: which signals it shows, how a value reaches it, how its settings are saved and edited. It knows
// neither the canvas nor the router, and never paints at once: a new value only calls update().
class DashboardWidget : public QWidget
{
    Q_OBJECT

public:
    explicit DashboardWidget(QWidget* parent = nullptr);

    /// The smallest size that the canvas allows: minimumSizeHint(), at least 80 × 60 pixels.
    virtual QSize minimumCanvasSize() const;
    /// Shows one new value, already in physical units; may be NaN or infinite.
    virtual void setValue(double value) = 0;
    /// The name under which the type is registered; a layout stores it as "type".
    virtual QString typeName() const = 0;
    /// As setValue(); widgets that show several signals use the name.
    virtual void setValueForSignal(const QString& name, double value);
    /// As setValueForSignal(); widgets with a time axis use tSec, in seconds.
    virtual void setValueForSignalAt(const QString& name, double value, double tSec);
    /// Whether the configuration dialog offers a list of signals instead of a single choice.
    virtual bool supportsMultipleSignals() const;
    /// Whether the configuration dialog offers a signal row at all.
    virtual bool usesSignalSelection() const;
    /// The first assigned signal; empty when there is none.
    virtual QString signalName() const;
    /// The signals that the router delivers. Only the part of an entry before its first ":" counts.
    virtual QList<QString> assignedSignalList() const;
    /// Replaces the whole list by this one name, be it empty.
    virtual void assignSignal(const QString& name);
    /// Replaces the list; order and duplicates stay.
    virtual void assignSignals(const QList<QString>& names);
    /// Reads what is there and leaves the rest: "signals" must be an array; what is no string in it is
    /// skipped.
    virtual void loadConfig(const QJsonObject& config);
    /// The settings that loadConfig() reads; here "signals" only.
    virtual QJsonObject saveConfig() const;
    /// Adds the widget's own rows to the form. The editors belong to parent.
    virtual void buildConfigUI(QFormLayout* form, QWidget* parent);
    /// Takes over what the editors of buildConfigUI() say, as far as they still exist.
    virtual void applyConfigUI();

    /// What a device says beside values.
    enum Event { StateEvent = 1, ErrorEvent = 2, MessageEvent = 4 };
    Q_DECLARE_FLAGS(Events, Event)
    /// Which of these the router brings to this widget, by the functions that follow; none unless a type says
    /// so. Always the same for a type.
    virtual Events shownEvents() const;
    /// The device is in another state. The group's name is compared ignoring letter case.
    virtual void showState(const QString& groupId, const QString& stateId, const QString& label);
    /// An error with its time in seconds, its id and the text to show for it.
    virtual void appendError(double tSec, const QString& id, const QString& text);
    virtual void clearErrors();
    /// A line of free text with its time in seconds.
    virtual void appendMessage(double tSec, const QString& text);
    virtual void clearMessages();
    /// Forgets the history that it draws and looks as new; settings and assignment stay.
    virtual void clearData();
    /// The project's catalogue is another one; a repaint follows.
    virtual void definitionsChanged();

Q_SIGNALS:
    /// What assignedSignalList() returns may have changed.
    void assignmentChanged();

protected:
    bool event(QEvent* event) override;
    /// As update(), but until the widget has been painted at the cost of a flag: for values, of which
    /// thousands may come between two frames.
    void updateForValue();

private:
    QList<QString> m_assignedSignals;
    bool m_updatePending = false;
};
