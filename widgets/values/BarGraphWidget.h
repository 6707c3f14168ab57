#pragma once

#include "widgets/DashboardWidget.h"

#include <QMap>
#include <QPointer>
#include <QSet>

class QDoubleSpinBox;
struct ValueScale;
class QPainter;
class QRect;

// The latest values of several signals as bars side by side on one value axis, each bar's name and value
// beneath it. The names follow the project's catalogue whenever it paints. It keeps no history.
class BarGraphWidget : public DashboardWidget
{
    Q_OBJECT

public:
    explicit BarGraphWidget(QWidget* parent = nullptr);

    /// The ends of the value axis, any two numbers: without minimum < maximum the axis ends 1 above the
    /// minimum.
    void setRange(double minimum, double maximum);

    void setValue(double) override {}
    QString typeName() const override;
    /// Only for an assigned signal, its name compared exactly. Values beyond the axis fill or empty the bar;
    /// NaN has no bar.
    void setValueForSignal(const QString& name, double value) override;
    bool supportsMultipleSignals() const override;
    /// Margin and spacing may be any numbers; they are painted as 0 … 1,000,000 pixels.
    void loadConfig(const QJsonObject& config) override;
    QJsonObject saveConfig() const override;
    void buildConfigUI(QFormLayout* form, QWidget* parent) override;
    void applyConfigUI() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Plot;
    struct Bar
    {
        QString name;
        double value; ///< the lower limit before the first one came
        int x;
    };
    /// The bars of one painting.
    struct Bars
    {
        int width = 0; ///< of each, in pixels
        int reach = 0; ///< how far a caption may stand out on either side
        QList<Bar> list;
    };

    void rememberAssignment();
    Plot plot() const;
    int margin() const;
    int barSpacing() const;
    static double gridValue(const ValueScale& scale, int line);
    void paintGrid(QPainter& painter, const Plot& plot) const;
    void paintZeroLine(QPainter& painter, const Plot& plot) const;
    Bars visibleBars(const Plot& plot, const QRect& exposed) const;
    void paintBar(QPainter& painter, const Plot& plot, int x, int width, double value) const;
    void paintCaptions(QPainter& painter, const Plot& plot, const Bars& bars) const;
    QFont captionFont(const QFont& usual, int width) const;

    static constexpr int m_gridLines = 5; ///< above the one at the bottom
    static constexpr bool m_showGrid = true;
    static constexpr int m_leftAxis = 40;  ///< pixels between margin and plot, for the numbers of the axis
    static constexpr int m_bottomPad = 22; ///< pixels between plot and margin, for names and values

    QSet<QString> m_assignedNames; ///< what assignedSignalList() holds, quick to ask for every value
    QMap<QString, double> m_latest;
    int m_margin = 8;
    int m_barSpacing = 8;
    double m_minHeight = 0.0;   ///< only kept for the layout
    double m_maxHeight = 100.0; ///< only kept for the layout
    double m_minimum = 0.0;
    double m_maximum = 100.0;
    QPointer<QDoubleSpinBox> m_minimumEditor;
    QPointer<QDoubleSpinBox> m_maximumEditor;
};
