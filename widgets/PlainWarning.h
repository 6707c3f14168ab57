#pragma once

#include <QMessageBox>

/// A warning box with an OK button whose text is shown as it is: a path or a device's text may look like
/// markup.
inline void warnPlainly(QWidget* parent, const QString& title, const QString& text)
{
    QMessageBox box(QMessageBox::Warning, title, text, QMessageBox::Ok, parent);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}
