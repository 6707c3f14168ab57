#include <QDirIterator>
#include <QImage>
#include <QTest>
#include <QTranslator>

using namespace Qt::StringLiterals;

// The icons are named by path in several libraries, which do not notice at build time when one is missing.
class TestResources : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyIconHasBothResolutions_data();
    void everyIconHasBothResolutions();
    void everyCarriedIconIsDrawn();
    void applicationIconIsLarge();
    void translationLoads();
};

void TestResources::everyIconHasBothResolutions_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name :
         {"design", "save",       "load",    "connect",       "record",          "stop",       "pause",
          "play",   "export",     "default", "gauge",         "display",         "bar_chart",  "line",
          "text",   "line_chart", "state",   "error_console", "message-console", "image-icon", "xy_plot"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestResources::everyIconHasBothResolutions()
{
    QFETCH(QString, name);
    const QString path = u":/icons/%1.png"_s.arg(name);
    QCOMPARE(QImage(path).size(), QSize(32, 32));
    const QImage fine(u":/icons/%1@2x.png"_s.arg(name));
    QCOMPARE(fine.size(), QSize(64, 64));
    QCOMPARE(fine.devicePixelRatio(), 2.0);
}

void TestResources::everyCarriedIconIsDrawn()
{
    int icons = 0;
    QDirIterator files(u":/icons"_s);
    while (files.hasNext()) {
        const QImage image(files.next());
        QVERIFY2(!image.isNull(), qPrintable(files.filePath()));
        QVERIFY2(image.hasAlphaChannel(), qPrintable(files.filePath()));
        QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
        int opaque = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                opaque += image.pixelColor(x, y).alpha() > 200 ? 1 : 0;
        }
        QVERIFY2(opaque * 50 > image.width() * image.height(), qPrintable(files.filePath()));
        ++icons;
    }
    QVERIFY(icons > 0);
}

void TestResources::applicationIconIsLarge()
{
    QCOMPARE(QImage(u":/icons/sigvane.png"_s).size(), QSize(256, 256));
}

void TestResources::translationLoads()
{
    QTranslator translator;
    QVERIFY(translator.load(u":/i18n/sigvane_en_GB.qm"_s));
    QCOMPARE(translator.language(), u"en_GB"_s);
}

QTEST_MAIN(TestResources)
#include "tst_resources.moc"
