#include "app/toolbars/PortComboBox.h"

#include <QLineEdit>

PortComboBox::PortComboBox(QWidget* parent)
    : QComboBox(parent)
{
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr); // would turn a typed ttyUSB1 into the listed ttyUSB10
    setMinimumWidth(140);
    setAccessibleName(tr("Serial port"));
    setToolTip(tr("Serial port: choose one, or type a name or a path such as /dev/serial/by-id/…"));
    lineEdit()->setPlaceholderText(tr("name or path"));
}

void PortComboBox::setPorts(const QList<QString>& ports)
{
    const QString text = currentText();
    clear();
    insertItems(count(), ports);
    const int index = findText(text, Qt::MatchExactly);
    if (index >= 0)
        setCurrentIndex(index);
    else if (!text.isEmpty())
        setEditText(text);
}

void PortComboBox::showPopup()
{
    Q_EMIT aboutToPopUp();
    QComboBox::showPopup();
}
