#include "support/Catalogue.h"
#include "support/WidgetPicture.h"
#include "widgets/values/BarGraphWidget.h"

#include <QTest>

#include <numeric>

using namespace Qt::StringLiterals;

namespace {

const QRect kCaptions(48, 109, 144, 29);

/// With a plot of 144 × 100 pixels at (48, 8), the first signal at that value.
std::unique_ptr<BarGraphWidget> graph(const QStringList& names, double low, double high, double value)
{
    auto widget = std::make_unique<BarGraphWidget>();
    widget->resize(200, 138);
    widget->setRange(low, high);
    widget->assignSignals(names);
    widget->setValueForSignal(names.first(), value);
    return widget;
}

bool isBar(const QColor& color) { return color == QColor(40, 140, 160) || color == Qt::black; }

struct Bar
{
    double minimum, maximum, value;
    int top, bottom; ///< rows of pixels
};

} // namespace

class TestBarGraphWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void barEndsAtItsValue_data()
    {
        QTest::addColumn<Bar>("bar");
        QTest::newRow("inside") << Bar{0, 100, 40, 68, 107};
        QTest::newRow("above the axis") << Bar{0, 100, 150, 8, 107};
        QTest::newRow("below the axis") << Bar{0, 100, -20, 108, 108};
        QTest::newRow("up from zero") << Bar{-50, 50, 25, 33, 57};
        QTest::newRow("down from zero") << Bar{-50, 50, -25, 58, 82};
        QTest::newRow("empty range") << Bar{10, 10, 10.5, 58, 107};
        QTest::newRow("infinite") << Bar{-1e308, 1e308, qInf(), 8, 57};
        QTest::newRow("tiny range") << Bar{0, 5e-324, 1, 8, 107};
        QTest::newRow("no number") << Bar{0, 1, qQNaN(), 1, 0};
    }

    void barEndsAtItsValue()
    {
        QFETCH(Bar, bar);
        const QImage image = picture(*graph({"A"}, bar.minimum, bar.maximum, bar.value));
        QList<int> rows;
        for (int y = 0; y < 110; ++y) {
            if (isBar(image.pixelColor(120, y)))
                rows.append(y);
        }
        QList<int> expected(bar.bottom - bar.top + 1);
        std::iota(expected.begin(), expected.end(), bar.top);
        QCOMPARE(rows, expected);
    }

    void zeroLineIsDashed()
    {
        const QImage image = picture(*graph({"A"}, -40, 60, qQNaN())); // in place of a grid line
        int gaps = 0;
        for (int x = 60; x < 180; ++x)
            gaps += image.pixelColor(x, 68) == image.pixelColor(60, 20);
        QVERIFY2(gaps > 20, "solid");
        QVERIFY2(gaps < 100, "missing");
    }

    void ignoresOtherNames()
    {
        const auto widget = graph({"SIG", "B"}, 0, 100, 40);
        const QImage before = picture(*widget);
        for (const char* other : {"sig", "SIG ", "C", ""})
            widget->setValueForSignal(QLatin1String(other), 90);
        QCOMPARE(picture(*widget), before);
    }

    void keepsValueWhileNotAssigned()
    {
        const auto widget = graph({"SIG", "B"}, 0, 100, 40);
        const QImage before = picture(*widget);
        widget->assignSignals({"B"});
        widget->setValueForSignal("SIG", 70);
        widget->assignSignals({"SIG", "B"});
        QCOMPARE(picture(*widget), before);
    }

    void tooManyBarsRunOutOfThePlot()
    {
        const QImage image = picture(*graph(QStringList(30, u"A"_s), 0, 100, 100));
        for (int x = 49; x < 196; ++x)
            QCOMPARE(isBar(image.pixelColor(x, 60)), (x - 48) % 12 < 4);
    }

    void longCaptionsLeaveGaps()
    {
        const QImage image = picture(*graph(QStringList(4, u"A long name"_s), 0, 100, -1.23456e-5));
        for (int bar = 1; bar < 4; ++bar)
            QCOMPARE(darkPixels(image, QRect(43 + 38 * bar, 111, 1, 27)), 0);
    }

    void saysThatThereAreNoSignals()
    {
        BarGraphWidget empty;
        const QImage words = picture(empty); // in gray
        QVERIFY(words != words.mirrored());
    }

    void writesNumbersBesideGridLines()
    {
        const QImage image = picture(*graph({"A"}, 0, 100, 11));
        QList<int> rows;
        for (int y = 8; y <= 108; y += 10) {
            if (darkPixels(image, QRect(20, y - 4, 26, 8)) > 5)
                rows.append(y);
        }
        QCOMPARE(rows, QList<int>({8, 28, 48, 68, 88, 108}));
    }

    void writesValueBelowBar()
    {
        const QImage image = picture(*graph({"A"}, 0, 100, 11));
        QVERIFY(picture(*graph({"A"}, 0, 100, 44)).copy(kCaptions) != image.copy(kCaptions));
    }

    void writesNameBelowBar()
    {
        QVERIFY(picture(*graph({"Fan"}, 0, 100, 40)) != picture(*graph({"Pump"}, 0, 100, 40)));
    }

    void writesDisplayNameOfTheCatalogue()
    {
        const ProjectCatalogue catalogue("DASHBOARD_SIGNAL(A, \"Pump\", NONE)\n");
        QCOMPARE(picture(*graph({"A"}, 0, 100, 40)), picture(*graph({"Pump"}, 0, 100, 40)));
    }
};

QTEST_MAIN(TestBarGraphWidget)
#include "tst_bargraphwidget.moc"
