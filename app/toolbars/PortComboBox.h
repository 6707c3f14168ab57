#pragma once

#include <QComboBox>

// Chooses a serial port from a list or by a typed name or path. Its current text is the port's name. It asks
// for a fresh list when it pops up and keeps what the user typed or chose when it gets one.
class PortComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit PortComboBox(QWidget* parent = nullptr);

    /// Replaces the list; the current text stays unless it is empty.
    void setPorts(const QList<QString>& ports);
    void showPopup() override;

Q_SIGNALS:
    void aboutToPopUp();
};
