#include "support/Catalogue.h"
#include "support/WidgetPicture.h"
#include "widgets/decor/LineWidget.h"
#include "widgets/decor/TextLabelWidget.h"
#include "widgets/values/BarGraphWidget.h"

#include <QTest>

using namespace Qt::StringLiterals;

// Bar graph, line and label: what the contract of all widgets does not cover.
class TestPlainWidgets : public QObject
{
    Q_OBJECT

    /// With a plot of 144 × 100 pixels at (48, 8), the first signal at that value.
    static auto graph(const QStringList& names, double low, double high, double value)
    {
        auto widget = std::make_unique<BarGraphWidget>();
        widget->resize(200, 138);
        widget->setRange(low, high);
        widget->assignSignals(names);
        widget->setValueForSignal(names.first(), value);
        return widget;
    }
    static bool isBar(const QColor& color) { return color == QColor(40, 140, 160) || color == Qt::black; }

private Q_SLOTS:
    void barEndsAtItsValue()
    {
        using Row = std::tuple<double, double, double, int, int>;
        for (const auto& [minimum, maximum, value, top, bottom] :
             {Row{0, 100, 150, 8, 107}, Row{0, 100, 40, 68, 107}, Row{0, 100, -20, 108, 108},
              Row{-50, 50, 25, 33, 57}, Row{-50, 50, -25, 58, 82}, Row{10, 10, 10.5, 58, 107},
              Row{-1e308, 1e308, qInf(), 8, 57}, Row{0, 5e-324, 1, 8, 107}, Row{0, 1, qQNaN(), 1, 0}}) {
            const QImage image = picture(*graph({"A"}, minimum, maximum, value));
            for (int y = 0; y < 110; ++y)
                QCOMPARE(isBar(image.pixelColor(120, y)), y >= top && y <= bottom);
        }
    }

    void zeroLineIsDashedInPlaceOfGridLine()
    {
        for (const int minimum : {-40, -50}) { // a grid line at zero, and none
            const int zeroY = 108 + minimum;
            const QImage image = picture(*graph({"A"}, minimum, minimum + 100, qQNaN()));
            int gaps = 0;
            for (int x = 60; x < 180; ++x)
                gaps += image.pixelColor(x, zeroY) == image.pixelColor(60, 20);
            QVERIFY(gaps > 20 && gaps < 100 && image.pixelColor(60, 88) != image.pixelColor(60, 20));
        }
    }

    void takesAssignedNamesOnly()
    {
        const auto widget = graph({"SIG", "B"}, 0, 100, 40);
        const QImage before = picture(*widget);
        for (const char* other : {"sig", "SIG ", "C", ""})
            widget->setValueForSignal(QLatin1String(other), 90);
        widget->assignSignals({"B"});
        widget->setValueForSignal("SIG", 70);
        widget->assignSignals({"SIG", "B"});
        QCOMPARE(picture(*widget), before);
    }

    void fitsBarsAndCaptions()
    {
        const QImage narrow = picture(*graph(QStringList(30, u"A"_s), 0, 100, 100));
        for (int x = 49; x < 196; ++x) // beyond the plot too
            QCOMPARE(isBar(narrow.pixelColor(x, 60)), (x - 48) % 12 < 4);
        const QImage wide = picture(*graph(QStringList(4, u"A long name"_s), 0, 100, -1.23456e-5));
        for (int bar = 1; bar < 4; ++bar) // nothing in the gaps of the captions
            QCOMPARE(darkPixels(wide, QRect(43 + 38 * bar, 111, 1, 27)), 0);
    }

    void writesNamesAndNumbers()
    {
        BarGraphWidget empty;
        const QImage words = picture(empty); // in gray
        QVERIFY(words != words.mirrored());
        const QRect captions(48, 109, 144, 29);
        const QImage image = picture(*graph({"A"}, 0, 100, 11));
        QVERIFY(picture(*graph({"A"}, 0, 100, 44)).copy(captions) != image.copy(captions));
        for (const int y : {8, 28, 48, 68, 88, 108}) {
            QVERIFY(darkPixels(image, QRect(20, y - 6, 26, 12)) > 5);
            QCOMPARE(darkPixels(image, QRect(20, y - 6, 6, 12)) > 0, y == 8); // of 100, at the top
        }
        QVERIFY(picture(*graph({"Fan"}, 0, 100, 40)) != picture(*graph({"Pump"}, 0, 100, 40)));
        const ProjectCatalogue catalogue("DASHBOARD_SIGNAL(A, \"Pump\", NONE)\n");
        QCOMPARE(picture(*graph({"A"}, 0, 100, 40)), picture(*graph({"Pump"}, 0, 100, 40)));
    }

    void lineKeepsThicknessAndDrawsWhatShows()
    {
        LineWidget line;
        line.resize(40, 30);
        using Row = std::tuple<QJsonValue, int, int>;
        for (const auto& [saved, loaded, rows] : {Row{25, 25, 25}, Row{3.9, 3, 3}, Row{"9", 3, 3},
                                                  Row{0, 1, 1}, Row{-5, 1, 1}, Row{0x1p31, 0x7fffffff, 30}}) {
            line.loadConfig({{"thickness", saved}, {"color", "black"}});
            QCOMPARE(line.saveConfig()["thickness"].toInt(), loaded);
            QCOMPARE(darkPixels(picture(line), line.rect()), 40 * rows);
        }
        line.loadConfig({{"orientation", "Vertical"}, {"thickness", 3}, {"color", "Green"}});
        for (int x = 17; x < 24; ++x)
            QCOMPARE(picture(line).pixelColor(x, 0) == Qt::darkGreen, x >= 19 && x <= 21);
    }

    void labelStaysOnOneLineInItsFontAndColor()
    {
        TextLabelWidget label;
        label.resize(100, 90);
        for (const auto& [at, x] : {std::pair("Left", 0), std::pair("Center", 40), std::pair("Right", 80)}) {
            label.loadConfig(
                {{"text", u"wide words\n"_s.repeated(100'000)}, {"align", at}, {"color", "green"}});
            const int all = darkPixels(picture(label), label.rect());
            QVERIFY(all > 50 && darkPixels(picture(label), QRect(2, 35, 96, 20)) == all);
            label.loadConfig({{"text", "i"}});
            QVERIFY(darkPixels(picture(label), QRect(x, 0, 20, 90)) > 5);
            label.loadConfig({{"text", u"i\u0301\u0323"_s.repeated(100)}}); // each with two accents
            QVERIFY(darkPixels(picture(label), QRect(80 - x, 0, 20, 90)) > 5);
        }
        QCOMPARE(label.saveConfig()["color"], QJsonValue("Black"));
        const auto ink = [&label](int points, bool bold) {
            label.loadConfig({{"text", "Ag"}, {"point", points}, {"bold", bold}});
            return darkPixels(picture(label), label.rect());
        };
        QVERIFY(ink(12, true) > 1.2 * ink(12, false) && ink(24, false) > 2 * ink(12, false));
    }
};

QTEST_MAIN(TestPlainWidgets)
#include "tst_plainwidgets.moc"
