#pragma once

#include "widgets/WidgetWithSettings.h"
#include "widgets/settings/DoubleSetting.h"
#include "widgets/settings/IntSetting.h"

#include <QMap>
#include <QSet>

struct ValueScale;
class QPainter;
class QRect;

// The latest values of several signals as bars side by side on one value axis, each bar's name and value
// beneath it. The names follow the project's catalogue whenever it paints. It keeps no history.
class BarGraphWidget : public WidgetWithSettings
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
    // Any numbers may come from a layout; they are painted as 0 … 1,000,000 pixels.
    IntSetting m_margin{settings(), "margin", 8};
    IntSetting m_barSpacing{settings(), "barSpacing", 8};
    // These two are only kept for the layout.
    DoubleSetting m_minHeight{settings(), "minHeight", 0.0};
    DoubleSetting m_maxHeight{settings(), "maxHeight", 100.0};
    DoubleSetting m_minimum{settings(),
                            "min",
                            0.0,
                            {tr("Min Value:"), tr("The value at the bottom of the graph"), 1e9, 2},
                            WrongType::Clears};
    DoubleSetting m_maximum{settings(),
                            "max",
                            100.0,
                            {tr("Max Value:"), tr("The value at the top of the graph"), 1e9, 2},
                            WrongType::Clears};
};
