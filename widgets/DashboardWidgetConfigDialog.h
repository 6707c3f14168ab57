#pragma once

#include <QDialog>
#include <QPointer>

class DashboardWidget;
class QComboBox;
class QFormLayout;
class QListWidget;

// The modal dialog that configures any widget: a row for its signals, of a form that the widget decides, and
// below it the widget's own rows. It rejects itself when the widget dies while it is open.
class DashboardWidgetConfigDialog : public QDialog
{
    Q_OBJECT

public:
    explicit DashboardWidgetConfigDialog(DashboardWidget* widget, QWidget* parent = nullptr);

    /// Lets the widget add its own rows. The constructor does so itself, and never through an override.
    virtual void addWidgetSpecificOptions();
    /// Writes the chosen signals and the widget's own rows back to the widget.
    void applyConfig();

private:
    void setupSignalRow();
    void setupSignalList();
    void setupSignalChoice();
    QList<QString> selectedSignals() const;

    QPointer<DashboardWidget> m_widget;
    QFormLayout* m_form = nullptr;
    QListWidget* m_signalList = nullptr;
    QList<QString> m_selectedAtFirst;
    QComboBox* m_signalChoice = nullptr;
};
