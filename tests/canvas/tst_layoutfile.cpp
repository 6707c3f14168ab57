#include "canvas/LayoutFile.h"
#include "support/Canvas.h"
#include "support/ModalAnswer.h"
#include "widgets/DashboardWidget.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMainWindow>
#include <QTemporaryDir>

class TestLayoutFile : public QObject
{
    Q_OBJECT

    static QByteArray read(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static QString write(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? path : QString();
    }

    /// JSON that is written with single quotes here, so that it can be read.
    static QByteArray json(QByteArray text) { return text.replace('\'', '"'); }

    static DashboardItem* fromText(const QByteArray& text)
    {
        return DashboardItem::fromJson(QJsonDocument::fromJson(json(text)).object());
    }

    QTemporaryDir m_dir;
    QMainWindow m_window;

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void survivesSaveAndLoad()
    {
        Canvas canvas;
        LayoutFile layout(&m_window, &canvas.scene);
        const char* types[] = {"DigitalDisplay", "AnalogGauge", "StateIndicator"};
        const double z[] = {0.5, 2, -1};
        for (int i = 0; i < 3; ++i) {
            DashboardItem* item = canvas.add(types[i], QRectF(100 * i + 10, -30, 250, 180));
            item->setZValue(z[i]);
            item->widget()->assignSignals({QStringLiteral("A:x"), QStringLiteral("B")});
        }
        const QString first = m_dir.filePath(QStringLiteral("a.json"));
        const QString second = m_dir.filePath(QStringLiteral("b.json"));
        QCOMPARE(layout.saveTo(first), QString());
        QCOMPARE(layout.loadFrom(first), QString());
        QCOMPARE(layout.saveTo(second), QString());
        const auto items = [](const QString& path) {
            return QJsonDocument::fromJson(read(path)).object().value(QStringLiteral("items"));
        };
        QCOMPARE(items(second), items(first));
        QCOMPARE(items(first).toArray().size(), 3);

        const QList<DashboardItem*> loaded = canvas.scene.dashboardItems();
        QCOMPARE(loaded.size(), 3);
        QCOMPARE(loaded[0]->widget()->typeName(), QStringLiteral("AnalogGauge"));
        QCOMPARE(loaded[0]->zValue(), 2.0);
        QCOMPARE(loaded[2]->widget()->typeName(), QStringLiteral("StateIndicator"));
        QCOMPARE(loaded[2]->zValue(), 0.0);
        QCOMPARE(loaded[2]->pos(), QPointF(210, -30));
        QCOMPARE(loaded[2]->boundingRect().size(), QSizeF(250, 180));
        QCOMPARE(loaded[0]->widget()->assignedSignalList(),
                 QList<QString>({QStringLiteral("A:x"), QStringLiteral("B")}));
    }

    void readsRecordsOfAnyKind_data()
    {
        QTest::addColumn<QByteArray>("record");
        QTest::addColumn<QRectF>("frame");
        QTest::addColumn<double>("z");
        const auto row = [](const char* name, const char* fields, const QRectF& frame, double z) {
            QTest::newRow(name) << QByteArray("{'type':'StateIndicator',") + fields + "}" << frame << z;
        };
        row("size raised to the grid", "'x':3,'y':4.5,'width':95,'height':41,'z':7", QRectF(3, 4.5, 100, 60),
            7);
        row("keys missing", "'config':{}", QRectF(0, 0, 80, 60), 0);
        row("wrong types", "'x':'1','y':[],'width':{},'height':null,'z':'2','signals':7,'config':[]",
            QRectF(0, 0, 80, 60), 0);
        row("huge", "'x':1e300,'y':-1e300,'width':1e300,'height':1e300,'z':1e300",
            QRectF(1e6, -1e6, 16000, 16000), 1e6);
        row("negative size", "'width':-1e300,'height':-5", QRectF(0, 0, 80, 60), 0);
    }
    void readsRecordsOfAnyKind()
    {
        QFETCH(QByteArray, record);
        QFETCH(QRectF, frame);
        QFETCH(double, z);
        Canvas canvas;
        const std::unique_ptr<DashboardItem> item(fromText(record));
        QVERIFY(item);
        QCOMPARE(QRectF(item->pos(), item->boundingRect().size()), frame);
        QCOMPARE(item->zValue(), z);
    }

    void configIsAppliedAfterTheSignals()
    {
        Canvas canvas;
        const std::unique_ptr<DashboardItem> item(
            fromText("{'type':'AnalogGauge','signals':['A',3,null,'B'],'config':{'min':-5.5,'max':20.9}}"));
        QVERIFY(item);
        QCOMPARE(item->widget()->assignedSignalList(),
                 QList<QString>({QStringLiteral("A"), QStringLiteral("B")}));
        QCOMPARE(item->widget()->saveConfig().value(QStringLiteral("max")).toDouble(), 20.0);
    }

    void refusesWhatIsNoLayout_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("text");
        const QString invalid = QStringLiteral("Invalid layout format.");
        QTest::newRow("empty") << QByteArray() << invalid;
        QTest::newRow("array") << QByteArray("[]") << invalid;
        QTest::newRow("cut off") << json("{'items':[{'type':'Anal") << invalid;
        QTest::newRow("deep") << QByteArray(100'000, '[') << invalid;
        QTest::newRow("a flood of items")
            << json("{'items':[" + QByteArray("{'type':'AnalogGauge'},").repeated(100'000) + "{}]}")
            << invalid;
        QTest::newRow("missing") << QByteArray("missing") << QStringLiteral("Could not load layout.");
    }
    void refusesWhatIsNoLayout()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, text);
        Canvas canvas;
        canvas.add("AnalogGauge", QRectF(0, 0, 200, 200));
        const QString path = m_dir.filePath(QStringLiteral("bad.json"));
        QFile::remove(path);
        if (content != "missing")
            QVERIFY(!write(path, content).isEmpty());
        ModalAnswer answer;
        answer.chooseFile(path).accept();
        if (content == "missing") // the dialog itself would not take it
            QCOMPARE(LayoutFile(&m_window, &canvas.scene).loadFrom(path), text);
        else {
            LayoutFile(&m_window, &canvas.scene).load(m_dir.path());
            QCOMPARE(answer.titles(), QStringList({QStringLiteral("Load Layout"), QStringLiteral("Error")}));
            QCOMPARE(answer.texts().last(), text);
        }
        QCOMPARE(canvas.scene.dashboardItems().size(), 1);
    }

    void skipsUnknownTypesAndClearsTheCanvas()
    {
        Canvas canvas;
        canvas.setDesignMode(true);
        const QPointer<DashboardWidget> old = canvas.add("AnalogGauge", QRectF(0, 0, 200, 200))->widget();
        const QString path = write(m_dir.filePath(QStringLiteral("some.json")),
                                   json("{'items':[{'type':'Gauge'},7,null,{'type':'DigitalDisplay'},{}],"
                                        "'windowGeometry':'####','windowState':17}"));
        QCOMPARE(LayoutFile(&m_window, &canvas.scene).loadFrom(path), QString());
        const QList<DashboardItem*> items = canvas.scene.dashboardItems();
        QCOMPARE(items.size(), 1);
        QCOMPARE(items.first()->widget()->typeName(), QStringLiteral("DigitalDisplay"));
        QVERIFY(items.first()->flags() & QGraphicsItem::ItemIsMovable); // in design mode at once
        QTRY_VERIFY(!old);
    }

    void savesThroughTheDialog()
    {
        Canvas canvas;
        canvas.add("AnalogGauge", QRectF(0, 0, 200, 200));
        const QString folder = m_dir.filePath(QStringLiteral("new/layouts"));
        ModalAnswer answer;
        answer.then([](QDialog* dialog) { dialog->accept(); });
        LayoutFile(&m_window, &canvas.scene).save(folder);
        QCOMPARE(answer.titles(), QStringList(QStringLiteral("Save Layout")));
        const QJsonObject saved =
            QJsonDocument::fromJson(read(folder + QStringLiteral("/layout.json"))).object();
        QStringList keys = saved.keys();
        QCOMPARE(keys, QStringList({QStringLiteral("isFullScreen"), QStringLiteral("isMaximized"),
                                    QStringLiteral("items"), QStringLiteral("windowGeometry"),
                                    QStringLiteral("windowState")}));
        QCOMPARE(saved.value(QStringLiteral("items")).toArray().size(), 1);
    }

    void keepsTheOldFileWhenTheDiskIsFull()
    {
        if (!QFileInfo::exists(QStringLiteral("/dev/full")))
            QSKIP("no /dev/full here");
        Canvas canvas;
        LayoutFile layout(&m_window, &canvas.scene);
        const QString text = QStringLiteral("Could not save layout.");
        QCOMPARE(layout.saveTo(QStringLiteral("/dev/full")), text);
        QCOMPARE(layout.saveTo(m_dir.path()), text);
        QCOMPARE(layout.saveTo(m_dir.filePath(QStringLiteral("no/such/folder/x.json"))), text);
        QCOMPARE(layout.saveTo(QString()), text);
    }
};

QTEST_MAIN(TestLayoutFile)
#include "tst_layoutfile.moc"
