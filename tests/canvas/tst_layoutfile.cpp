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
#include <QToolBar>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

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
            item->widget()->assignSignals({u"A:x"_s, u"B"_s});
        }
        const QString folder = m_dir.filePath(u"new/layouts"_s); // made by the save
        ModalAnswer answer;
        answer.accept();
        layout.save(folder);
        QCOMPARE(answer.titles(), QStringList(u"Save Layout"_s));
        const QString first = folder + u"/layout.json"_s;
        const QString second = folder + u"/again.json"_s;
        QCOMPARE(layout.loadFrom(first), QString());
        QCOMPARE(layout.saveTo(second), QString());
        const auto items = [](const QString& path) {
            return QJsonDocument::fromJson(read(path)).object().value(u"items"_s).toArray();
        };
        QCOMPARE(items(second), items(first));
        const QJsonObject expected{{u"type"_s, u"StateIndicator"_s},
                                   {u"signals"_s, QJsonArray{u"A:x"_s, u"B"_s}},
                                   {u"x"_s, 210},
                                   {u"y"_s, -30},
                                   {u"width"_s, 250},
                                   {u"height"_s, 180},
                                   {u"z"_s, 0},
                                   {u"config"_s, QJsonObject{{u"groupId"_s, QString()}, {u"corner"_s, 10}}}};
        QCOMPARE(items(first).size(), 3);
        QCOMPARE(items(first)[2].toObject(), expected); // the lowest comes last
    }

    void windowComesBackAsItWas()
    {
        Canvas canvas;
        QMainWindow window;
        QList<QToolBar*> bars;
        for (const QString& name : {u"a"_s, u"b"_s}) {
            bars.append(window.addToolBar(name));
            bars.last()->setObjectName(name);
        }
        window.insertToolBarBreak(bars[1]);
        window.resize(500, 400);
        window.show();
        LayoutFile layout(&window, &canvas.scene);
        const QString path = m_dir.filePath(u"window.json"_s);
        QCOMPARE(layout.saveTo(path), QString());
        QJsonObject saved = QJsonDocument::fromJson(read(path)).object();
        window.removeToolBarBreak(bars[1]);
        window.resize(300, 300);
        QCOMPARE(layout.loadFrom(path), QString());
        QCOMPARE(window.size(), QSize(500, 400));
        QVERIFY(window.toolBarBreak(bars[1]));

        bars[0]->hide(); // a state that would hide a toolbar is not taken
        saved.insert(u"windowState"_s, QString::fromLatin1(window.saveState().toBase64()));
        bars[0]->show();
        QCOMPARE(layout.loadFrom(write(path, QJsonDocument(saved).toJson())), QString());
        QVERIFY(bars[0]->isVisible());

        saved.insert(u"isMaximized"_s, true);
        saved.insert(u"isFullScreen"_s, true);
        QCOMPARE(layout.loadFrom(write(path, QJsonDocument(saved).toJson())), QString());
        QVERIFY(window.isFullScreen());
    }

    void windowStateWithHugeCountsIsLeftAlone()
    {
        Canvas canvas;
        LayoutFile layout(&m_window, &canvas.scene);
        // The toolkit would loop as often as these counts of toolbar lines and toolbars say.
        const QByteArray head = QByteArray::fromHex("000000ff00000000");
        const QByteArray noDocks = QByteArray::fromHex("fd00000000") + QByteArray(24, '\0');
        for (const QByteArray& rest :
             {QByteArray::fromHex("fe7fffffff"), QByteArray(noDocks + QByteArray::fromHex("fc7fffffff")),
              QByteArray(noDocks + QByteArray::fromHex("fc00000001000000027fffffff"))}) {
            const QJsonObject hostile{{u"windowState"_s, QString::fromLatin1((head + rest).toBase64())}};
            const QString path = write(m_dir.filePath(u"state.json"_s), QJsonDocument(hostile).toJson());
            QCOMPARE(layout.loadFrom(path), QString()); // in less than a test's patience
        }
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
            QRectF(1e6, -1e6, 16000, 16000), 1e12);
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

    void refusesWhatIsNoLayout_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("text");
        const QString invalid = u"Invalid layout format."_s;
        QTest::newRow("empty") << QByteArray() << invalid;
        QTest::newRow("cut off") << json("{'items':[{'type':'Anal") << invalid;
        QTest::newRow("deep") << QByteArray(100'000, '[') << invalid;
        QTest::newRow("a flood of items")
            << json("{'items':[" + QByteArray("{'type':'AnalogGauge'},").repeated(100'000) + "{}]}")
            << invalid;
        QTest::newRow("missing") << QByteArray("missing") << u"Could not load layout."_s;
    }
    void refusesWhatIsNoLayout()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, text);
        Canvas canvas;
        canvas.add("AnalogGauge", QRectF(0, 0, 200, 200));
        const QString path = m_dir.filePath(u"bad.json"_s);
        QFile::remove(path);
        if (content != "missing")
            QVERIFY(!write(path, content).isEmpty());
        ModalAnswer answer;
        answer.chooseFile(path).accept();
        LayoutFile layout(&m_window, &canvas.scene);
        if (content == "missing") { // the dialog itself would not take it
            QCOMPARE(layout.loadFrom(path), text);
        } else {
            layout.load(m_dir.path());
            QCOMPARE(answer.titles(), QStringList({u"Load Layout"_s, u"Error"_s}));
            QCOMPARE(answer.texts().last(), text);
        }
        QCOMPARE(canvas.scene.dashboardItems().size(), 1);
    }

    void skipsUnknownTypesAndClearsTheCanvas()
    {
        Canvas canvas;
        canvas.setDesignMode(true);
        const QPointer<DashboardWidget> old = canvas.add("AnalogGauge", QRectF(0, 0, 200, 200))->widget();
        const QString path = write(m_dir.filePath(u"some.json"_s),
                                   json("{'items':[{'type':'Gauge'},7,null,{},{'type':'AnalogGauge',"
                                        "'signals':['A',3,null,'B'],'config':{'min':-5.5,'max':20.9}}],"
                                        "'windowGeometry':'####','windowState':17}"));
        QCOMPARE(LayoutFile(&m_window, &canvas.scene).loadFrom(path), QString());
        const QList<DashboardItem*> items = canvas.scene.dashboardItems();
        QCOMPARE(items.size(), 1);
        QCOMPARE(items.first()->widget()->assignedSignalList(), QList<QString>({u"A"_s, u"B"_s}));
        QCOMPARE(items.first()->widget()->saveConfig().value(u"max"_s).toDouble(), 20.0);
        QVERIFY(items.first()->flags() & QGraphicsItem::ItemIsMovable); // in design mode at once
        QTRY_VERIFY(!old);
    }

    void failedSaveKeepsTheOldFile()
    {
        Canvas canvas;
        canvas.add("AnalogGauge", QRectF(0, 0, 200, 200));
        LayoutFile layout(&m_window, &canvas.scene);
        const QString text = u"Could not save layout."_s;
        const QString path = write(m_dir.filePath(u"old.json"_s), "precious");
        // What a full disk does: a write comes back short.
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit small{100, before.rlim_max};
        std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &small);
        const QString problem = layout.saveTo(path);
        setrlimit(RLIMIT_FSIZE, &before);
        QCOMPARE(problem, text);
        QCOMPARE(read(path), QByteArray("precious"));
        QCOMPARE(layout.saveTo(u"/dev/full"_s), text);
        QCOMPARE(layout.saveTo(m_dir.path()), text);
        QCOMPARE(layout.saveTo(QString()), text);
    }
};

QTEST_MAIN(TestLayoutFile)
#include "tst_layoutfile.moc"
