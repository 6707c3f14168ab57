#pragma once

#include <QListWidget>

// The list of widget types that the user can put on the canvas: a double click, or Return on the current
// entry, asks for one.
class WidgetPalette : public QListWidget
{
    Q_OBJECT

public:
    /// Registers the built-in types and lists every registered one.
    explicit WidgetPalette(QWidget* parent = nullptr);

Q_SIGNALS:
    void widgetRequested(const QString& typeName);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void request(const QListWidgetItem* item);
};
