#pragma once

#include <QLabel>

// A text that is pressed like a button, with the mouse or the keyboard. A long one is elided in the middle.
class ClickableLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ClickableLabel(const QString& text, QWidget* parent);

Q_SIGNALS:
    void clicked();

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};
