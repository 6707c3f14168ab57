#pragma once

#include "widgets/DashboardWidget.h"

#include <QColor>
#include <QPointer>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QSpinBox;

// A fixed caption on one line, clipped where it is wider than the widget and after 1,000 characters. It shows
// no signal, and takes its text as text: nothing in it is read as markup.
class TextLabelWidget : public DashboardWidget
{
    Q_OBJECT

public:
    explicit TextLabelWidget(QWidget* parent = nullptr);

    void setValue(double) override {}
    QString typeName() const override;
    bool usesSignalSelection() const override;
    /// An unknown colour is black, an unknown alignment centred, a font size kept within 1 … 500 points.
    void loadConfig(const QJsonObject& config) override;
    QJsonObject saveConfig() const override;
    void buildConfigUI(QFormLayout* form, QWidget* parent) override;
    void applyConfigUI() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_text;
    QColor m_color{Qt::black};
    int m_pointSize = 12;
    bool m_bold = false;
    Qt::Alignment m_alignment = Qt::AlignCenter;
    QPointer<QLineEdit> m_textEditor;
    QPointer<QComboBox> m_colorEditor;
    QPointer<QSpinBox> m_pointSizeEditor;
    QPointer<QCheckBox> m_boldEditor;
    QPointer<QComboBox> m_alignmentEditor;
};
