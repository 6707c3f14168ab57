#include "support/Catalogue.h"
#include "support/WidgetPicture.h"
#include "widgets/values/BarGraphWidget.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// A graph from low to high with a plot of 144 × 100 pixels at (48, 8), the first signal at that value.
static std::unique_ptr<BarGraphWidget> graph(const QStringList& names, double value, double low = 0,
                                             double high = 100)
{
    auto widget = std::make_unique<BarGraphWidget>();
    widget->resize(200, 138);
    widget->setRange(low, high);
    widget->assignSignals(names);
    widget->setValueForSignal(names.first(), value);
    return widget;
}

static bool isBar(const QColor& color) { return color == QColor(40, 140, 160) || color == Qt::black; }

class TestBarGraphWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void barEndsAtItsValue_data()
    {
        QTest::addColumn<double>("low");
        QTest::addColumn<double>("high");
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("top"); // in pixels
        QTest::addColumn<int>("height");
        QTest::newRow("inside") << 0.0 << 100.0 << 40.0 << 68 << 40;
        QTest::newRow("above the axis") << 0.0 << 100.0 << 150.0 << 8 << 100;
        QTest::newRow("down from zero") << -50.0 << 50.0 << -30.0 << 58 << 30;
        QTest::newRow("empty range") << 10.0 << 10.0 << 10.5 << 58 << 50;
        QTest::newRow("infinite") << -1e308 << 1e308 << qInf() << 8 << 50;
        QTest::newRow("no number") << 0.0 << 1.0 << qQNaN() << 0 << 0;
    }

    void barEndsAtItsValue()
    {
        QFETCH(double, low);
        QFETCH(double, high);
        QFETCH(double, value);
        const QImage image = picture(*graph({"A"}, value, low, high));
        QList<int> rows;
        for (int y = 0; y < 110; ++y) {
            if (isBar(image.pixelColor(120, y)))
                rows.append(y);
        }
        QTEST(rows.value(0), "top");
        QTEST(int(rows.size()), "height");
    }

    void tooManyBarsRunOutOfThePlot()
    {
        const QImage image = picture(*graph(QStringList(30, u"A"_s), 100));
        for (int x = 49; x < 196; ++x)
            QCOMPARE(isBar(image.pixelColor(x, 60)), (x - 48) % 12 < 4);
    }

    void writesLongValueBelowNarrowBar()
    {
        const QStringList names(4, u"A"_s);
        QVERIFY(picture(*graph(names, -1.23456e-5)) != picture(*graph(names, -2.34567e-5)));
    }

    void writesDisplayNameOfTheCatalogue()
    {
        const ProjectCatalogue catalogue("DASHBOARD_SIGNAL(A, \"Pump\", NONE)\n");
        QCOMPARE(picture(*graph({"A"}, 40)), picture(*graph({"Pump"}, 40)));
    }
};

QTEST_MAIN(TestBarGraphWidget)
#include "tst_bargraphwidget.moc"
