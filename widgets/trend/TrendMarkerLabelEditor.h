#pragma once

#include <QDialog>

class QLineEdit;

// The small pop-up in which the label of a marker is typed. Return hands the text over by a signal and closes
// it; Esc or a click outside closes it and says nothing. It destroys itself when it closes.
class TrendMarkerLabelEditor : public QDialog
{
    Q_OBJECT

public:
    explicit TrendMarkerLabelEditor(const QString& label, QWidget* parent);

    /// Shows it a little right of and below a place on the screen, moved as far as needed to be seen whole.
    void showNear(const QPoint& globalPos);

Q_SIGNALS:
    void labelEntered(const QString& label);

private:
    void enter();

    QLineEdit* m_edit;
};
