#include "support/Canvas.h"
#include "support/WidgetPicture.h"
#include "widgets/DashboardWidget.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QApplication>
#include <QGraphicsRectItem>
#include <QJsonDocument>
#include <QLabel>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

// How each type looks on the canvas, where it inherits the view's smooth edges and its proxy paints
// a background: rendered alone it looks different. The view's viewport is rendered, as the screen does it
// (QGraphicsView::render() passes the hints on only if its painter has them). Positions are in the item's own
// units, with one to two device pixels for each. What looks wrong today is marked as an expected failure;
// whoever mends it is told to take the mark away.

static const double kRatios[] = {1.0, 1.5, 2.0};
static const QString kText = u"ÅgQj"_s; // from the highest to the lowest that letters reach
static constexpr QRectF kFrame(40, 30, 250, 200);

struct Type
{
    const char* name;
    bool isFilled; ///< nothing below it shows through
    bool reachesItsEdge = false;
};

static constexpr QRectF kWhole(0, 0, 250, 200);
static const Type kTypes[] = {
    {"AnalogGauge", false}, {"BarGraph", true},    {"DigitalDisplay", false},  {"ErrorConsole", false},
    {"Image", true},        {"Line", false, true}, {"MessagesConsole", false}, {"StateIndicator", true},
    {"TextLabel", true},    {"TrendPlot", true},   {"XYPlot", true},
};

// A straight line that a type draws and a way across it; without a thickness the edge of an area.
struct Rule
{
    const char *type, *name, *config;
    QPointF from, to;
    int thickness;
    QRgb color;
    QList<double> blurredAt = {}; ///< ratios, today
};

// A text that a type writes, and room around it with nothing else in it.
struct Text
{
    const char *type, *name, *config;
    QString text;
    int pointSize;
    QRectF room;
};

/// The smallest rectangle around all in the area that differs from its first corner.
static QRect inked(const QImage& image, const QRect& area)
{
    constexpr int kSeen = 4; // less is how blending rounds
    const int paper = qGray(image.pixel(area.topLeft()));
    QRect box;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (std::abs(qGray(image.pixel(x, y)) - paper) > kSeen)
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

// An item of the type with all that the type can show.
class Pictured : public Canvas
{
public:
    explicit Pictured(const char* type, const QByteArray& config = "{}")
        : m_widget(add(type, kFrame)->widget())
    {
        QPixmap picture(100, 100);
        picture.fill(Qt::yellow);
        picture.save(m_dir.filePath(u"picture.png"_s));
        scene.setProjectFolder(m_dir.path());
        m_widget->assignSignals({kText, u"B"_s});
        m_widget->loadConfig({{u"xSignal"_s, kText}, {u"ySignal"_s, u"B"_s}, {u"groupId"_s, kText}});
        m_widget->loadConfig(QJsonDocument::fromJson(QByteArray(config).replace('\'', '"')).object());
        if (auto* plot = qobject_cast<TrendPlotWidget*>(m_widget)) {
            plot->setExternalTimeEnabled(true);
            plot->setExternalNowMs(10'000);
        }
        m_widget->setValueForSignalAt(kText, -50, 1);
        m_widget->setValueForSignalAt(u"B"_s, 10, 2);
        m_widget->showState(kText, u"GO"_s, kText);
        m_widget->appendError(1, kText, {});
        m_widget->appendMessage(1, kText);
        QCoreApplication::processEvents(); // consoles write from the event loop
    }

    QImage picture(double ratio) { return ::picture(*view.viewport(), ratio); }
    static QPoint pixel(const QPointF& pos, double ratio)
    {
        return ((pos + kFrame.topLeft()) * ratio).toPoint();
    }
    static QRect pixels(const QRectF& area, double ratio)
    {
        return {pixel(area.topLeft(), ratio), pixel(area.bottomRight(), ratio) - QPoint(1, 1)};
    }
    /// The colours along a way, except for those at its two ends.
    QStringList colorsBetween(const QPointF& from, const QPointF& to, double ratio)
    {
        const QImage image = picture(ratio);
        const QPoint end = pixel(to, ratio);
        QStringList colors;
        for (QPoint at = pixel(from, ratio); at != end; at += QPoint(at.x() < end.x(), at.y() < end.y()))
            colors.append(image.pixelColor(at).name());
        const QString first = colors.first();
        const QString last = colors.last();
        while (!colors.isEmpty() && colors.first() == first)
            colors.removeFirst();
        while (!colors.isEmpty() && colors.last() == last)
            colors.removeLast();
        return colors;
    }

private:
    QTemporaryDir m_dir;
    DashboardWidget* m_widget;
};

class TestWidgetPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTypeHasItsRow()
    {
        const Canvas canvas; // registers the types
        QStringList names;
        for (const Type& type : kTypes)
            names.append(QLatin1String(type.name));
        QStringList registered = DashboardWidgetFactory::instance().availableTypes();
        registered.sort();
        QCOMPARE(names.join(u' '), registered.join(u' '));
    }

    void drawsSomethingWithinItsFrame_data() { addRows<Type>(kTypes); }
    void drawsSomethingWithinItsFrame()
    {
        QFETCH(Type, row);
        QFETCH(double, ratio);
        // What touches the edge has most likely been cut off there.
        const double margin = row.reachesItsEdge ? 0 : 1;
        const QImage image = Pictured(row.name).picture(ratio);
        const QRect frame = Pictured::pixels(kWhole.adjusted(margin, margin, -margin, -margin), ratio);
        const QRect drawn = inked(image, image.rect());
        QVERIFY(!drawn.isEmpty());
        QCOMPARE(drawn | frame, frame);
    }

    void unfilledOnesShowWhatIsBelow_data()
    {
        QTest::addColumn<QByteArray>("type");
        for (const Type& type : kTypes) {
            if (!type.isFilled)
                QTest::newRow(type.name) << QByteArray(type.name);
        }
    }
    void unfilledOnesShowWhatIsBelow()
    {
        QFETCH(QByteArray, type);
        Pictured canvas(type);
        canvas.scene.addRect(kFrame, Qt::NoPen, Qt::magenta)->setZValue(-1);
        const QPoint free = Pictured::pixel({10, 3}, 1); // where none of them draws anything
        QEXPECT_FAIL("", "the proxy paints the window's background below the widget", Continue);
        QCOMPARE(canvas.picture(1).pixelColor(free), QColor(Qt::magenta));
    }

    void rulesAreSharp_data()
    {
        const char* plain = "{'autoscale':false,'yMin':-60,'yMax':60,'showGrid':false,"
                            "'markers':[{'kind':'screen','xFrac':0.55}]}";
        const char* grid = "{'autoscale':false,'yMin':-60,'yMax':60}";
        const char* image = "{'border':true,'path':'picture.png'}";
        const char* upright = "{'thickness':3,'orientation':'Vertical'}";
        const Rule rules[] = {
            {"BarGraph", "axis", "{}", {40, 20}, {56, 20}, 1, 0xa0a0a0},
            {"BarGraph", "grid line", "{}", {200, 30}, {200, 50}, 1, 0xd7d7d7, {1, 1.5}},
            {"BarGraph", "outline of a bar", "{'min':-100}", {200, 76}, {200, 85}, 1, 0x000000, {1.5}},
            {"BarGraph", "zero line", "{'min':-100}", {146, 80}, {146, 98}, 2, 0x787878},
            {"Image", "bottom border", image, {10, 195}, {10, 205}, 1, 0x1e1e1e},
            {"Line", "1 unit", "{'thickness':1}", {125, 90}, {125, 110}, 1, 0x787878, {1.5}},
            {"Line", "3 units, upright", upright, {115, 50}, {135, 50}, 3, 0x787878, {1.5}},
            {"StateIndicator", "edge of the lamp", "{}", {2, 100}, {14, 100}, 0, 0},
            {"TrendPlot", "edge of a legend's square", plain, {48, 45}, {58, 45}, 0, 0},
            {"TrendPlot", "level grid line", grid, {220, 52}, {220, 62}, 1, 0xd2d2d2, {1, 1.5, 2}},
            {"TrendPlot", "marker", plain, {148, 31}, {160, 31}, 1, 0x1478c8},
            {"TrendPlot", "top edge", plain, {220, 20}, {220, 34}, 1, 0xc8c8c8, {1, 1.5}},
            {"TrendPlot", "upright grid line", grid, {160, 50}, {172, 50}, 1, 0xd2d2d2, {1, 1.5}},
            {"TrendPlot", "value axis", plain, {40, 60}, {49, 60}, 1, 0xa0a0a0, {1, 1.5}},
            {"TrendPlot", "zero line", plain, {47.5, 90}, {47.5, 110}, 2, 0x3c3c3c},
            {"XYPlot", "bottom of the frame", "{}", {100, 166}, {100, 178}, 1, 0xa0a0a0},
            {"XYPlot", "upright grid line", "{}", {80, 50}, {92, 50}, 1, 0xd2d2d2},
        };
        addRows<Rule>(rules);
    }
    void rulesAreSharp()
    {
        QFETCH(Rule, row);
        QFETCH(double, ratio);
        const QStringList colors = Pictured(row.type, row.config).colorsBetween(row.from, row.to, ratio);
        const double pixels = row.thickness * ratio; // half a pixel too much or too little is not seen
        const double thickness = std::clamp(double(colors.size()), std::floor(pixels), std::ceil(pixels));
        if (row.blurredAt.contains(ratio))
            QEXPECT_FAIL("", "drawn with the view's smooth edges, it is spread over its neighbours",
                         Continue);
        QCOMPARE(colors.join(u' '), QStringList(int(thickness), QColor(row.color).name()).join(u' '));
    }

    void textsAreWhole_data()
    {
        const auto height = [](int pointSize) {
            QFont font;
            font.setPointSize(pointSize);
            return QFontMetrics(font).height();
        };
        const int usual = QApplication::font().pointSize();
        const char* plain = "{'autoscale':false,'yMin':-60,'yMax':60,'showGrid':false}";
        const char* left = "{'text':'ÅgQj','align':'Left','point':48}";
        const QRectF all = kWhole.adjusted(1, 1, -1, -1);
        const Text texts[] = {
            {"BarGraph", "axis number", "{}", u"100"_s, 9, {0, 0, 45, 20}},
            {"BarGraph", "name", "{}", kText, 9, QRectF(50, 171, 90, 1 + height(9))},
            {"DigitalDisplay", "value", "{}", u"10.0"_s, 28, {1, 50, 248, 85}},
            {"DigitalDisplay", "name", "{}", kText, 10, {1, 140, 248, 40}},
            {"ErrorConsole", "line", "{}", u"[1.000s] %1 : %1"_s.arg(kText), usual, {5, 5, 240, 60}},
            {"Image", "invitation", "{}", u"Drop image or choose file…"_s, usual, all},
            {"MessagesConsole", "line", "{}", u"[1.000s] "_s + kText, usual, {5, 5, 240, 60}},
            {"StateIndicator", "caption", "{}", kText, 14, QRectF(8, 2, 234, 10 + height(14))},
            {"StateIndicator", "state", "{}", kText, 14, QRectF(20, 30 + height(14), 210, 100)},
            {"TextLabel", "centred", "{'text':'ÅgQj'}", kText, 12, all},
            {"TextLabel", "left, large", left, kText, 48, all},
            {"TrendPlot", "legend", plain, kText, 9, {65, 36, 60, 20}},
            {"TrendPlot", "highest value", plain, u"60"_s, 9, {0, 24, 44, 22}},
            {"TrendPlot", "now", plain, u"0.000s"_s, 9, {200, 180, 49, 19}},
            {"XYPlot", "title", "{'showGrid':false}", u"B vs "_s + kText, 9, {50, 0, 180, 22}},
            {"XYPlot", "lowest X", "{'showGrid':false}", u"-50"_s, 9, {46, 177, 60, 22}},
        };
        addRows<Text>(texts);
    }
    void textsAreWhole()
    {
        QFETCH(Text, row);
        QFETCH(double, ratio);
        QLabel label(row.text);
        QFont font = label.font();
        font.setPointSize(row.pointSize);
        label.setFont(font);
        label.setAlignment(Qt::AlignCenter);
        label.resize(400, 200);
        const QImage ample = ::picture(label, ratio);
        const QSize whole = inked(ample, ample.rect()).size();
        const QSize seen =
            inked(Pictured(row.type, row.config).picture(ratio), Pictured::pixels(row.room, ratio)).size();
        const QSize pixel(1, 1); // more or less, as a text may begin between two
        QCOMPARE(seen, seen.expandedTo(whole - pixel).boundedTo(whole + pixel));
    }

private:
    static QByteArray nameOf(const Type& type) { return type.name; }
    template <class Row>
    static QByteArray nameOf(const Row& row)
    {
        return QByteArray(row.type) + ": " + row.name;
    }

    /// Each row at each ratio.
    template <class Row, class Rows>
    static void addRows(const Rows& rows)
    {
        QTest::addColumn<Row>("row");
        QTest::addColumn<double>("ratio");
        for (const Row& row : rows) {
            for (const double ratio : kRatios)
                QTest::addRow("%s, ratio %g", nameOf(row).constData(), ratio) << row << ratio;
        }
    }
};

QTEST_MAIN(TestWidgetPictures)
#include "tst_widgetpictures.moc"
