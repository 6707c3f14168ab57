#include <QImage>
#include <QTest>

using namespace Qt::StringLiterals;

// The icons are named by path in several libraries, which do not notice at build time when one is missing.
class TestResources : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void iconIsDrawnInBothResolutions_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* name :
             {"design", "save",       "load",    "connect",       "record",          "stop",       "pause",
              "play",   "export",     "default", "gauge",         "display",         "bar_chart",  "line",
              "text",   "line_chart", "state",   "error_console", "message-console", "image-icon", "xy_plot"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    void iconIsDrawnInBothResolutions()
    {
        QFETCH(QString, name);
        const QImage fine(u":/icons/%1@2x.png"_s.arg(name));
        QCOMPARE(QImage(u":/icons/%1.png"_s.arg(name)).size(), QSize(32, 32));
        QCOMPARE(fine.size(), QSize(64, 64));
        QCOMPARE(fine.devicePixelRatio(), 2.0);
        QCOMPARE(fine.pixelColor(0, 0).alpha(), 0); // on any background
        int opaque = 0;
        for (int i = 0; i < 64 * 64; ++i)
            opaque += fine.pixelColor(i % 64, i / 64).alpha() > 200 ? 1 : 0;
        QVERIFY(opaque > 80);
    }

    void applicationIconIsLarge() { QCOMPARE(QImage(u":/icons/sigvane.png"_s).size(), QSize(256, 256)); }
};

QTEST_GUILESS_MAIN(TestResources)
#include "tst_resources.moc"
