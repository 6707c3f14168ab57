#include "canvas/LayoutFile.h"
#include "support/Canvas.h"
#include "support/Files.h"
#include "support/ModalAnswer.h"
#include "widgets/DashboardWidget.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QMainWindow>
#include <QScreen>
#include <QTemporaryDir>
#include <QToolBar>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

static QJsonObject readJson(const QString& path) { return QJsonDocument::fromJson(readFile(path)).object(); }

/// JSON that is written with single quotes here, so that it can be read.
static QByteArray json(QByteArray text) { return text.replace('\'', '"'); }

// A canvas beside a window, and a layout file for both.
struct Desk : Canvas
{
    QMainWindow window;
    LayoutFile layout{&window, &scene};
    QTemporaryDir dir;
    QString path = dir.filePath(u"layout.json"_s);

    /// The test ends when that is no layout.
    void load(const QByteArray& bytes)
    {
        writeFile(path, bytes);
        if (const QString problem = layout.loadFrom(path); !problem.isEmpty())
            qFatal("%s", qPrintable(problem));
    }
    void load(const QJsonObject& saved) { load(QJsonDocument(saved).toJson()); }
    /// What a save writes; the test ends when it fails.
    QJsonObject saved()
    {
        if (const QString problem = layout.saveTo(path); !problem.isEmpty())
            qFatal("%s", qPrintable(problem));
        return readJson(path);
    }
    QToolBar* addToolBar(const QString& name)
    {
        QToolBar* bar = window.addToolBar(name);
        bar->setObjectName(name);
        return bar;
    }
};

class TestLayoutFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saveAsksForAFileInAFolderThatItMakes()
    {
        Desk desk;
        ModalAnswer answer;
        answer.accept();
        desk.layout.save(desk.dir.filePath(u"new/layouts"_s));
        QCOMPARE(answer.titles(), QStringList(u"Save Layout"_s));
        QVERIFY(readJson(desk.dir.filePath(u"new/layouts/layout.json"_s)).contains(u"items"_s));
    }

    void savesTopmostFirstInWholeLayers()
    {
        Desk desk;
        DashboardItem* item = desk.add("StateIndicator", QRectF(210, -30, 250, 180));
        item->setZValue(-1);
        item->widget()->assignSignals({u"A:x"_s, u"B"_s});
        desk.add("AnalogGauge", QRectF(0, 0, 200, 200))->setZValue(0.5);
        const QJsonArray items = desk.saved().value(u"items"_s).toArray();
        QCOMPARE(items[0].toObject().value(u"z"_s), 1);
        QCOMPARE(QJsonDocument(items[1].toObject()).toJson(QJsonDocument::Compact),
                 json("{'config':{'corner':10,'groupId':''},'height':180,'signals':['A:x','B'],"
                      "'type':'StateIndicator','width':250,'x':210,'y':-30,'z':0}"));
    }

    void windowComesBackAsItWas()
    {
        Desk desk;
        desk.addToolBar(u"a"_s);
        QToolBar* second = desk.addToolBar(u"b"_s);
        desk.window.insertToolBarBreak(second);
        desk.window.resize(500, 400);
        desk.window.show();
        const QJsonObject saved = desk.saved();
        desk.window.removeToolBarBreak(second);
        desk.window.resize(300, 300);
        desk.load(saved);
        QCOMPARE(desk.window.size(), QSize(500, 400));
        QVERIFY(desk.window.toolBarBreak(second));
    }

    void windowOffTheScreenComesBackIntoSight()
    {
        Desk desk;
        desk.window.setGeometry(20'000, 20'000, 500, 400);
        desk.window.show();
        desk.load({{u"windowGeometry"_s, u"of a screen that is gone"_s}}); // which Qt refuses
        const QRect screen = desk.window.screen()->availableGeometry();
        QCOMPARE(desk.window.geometry() & screen, desk.window.geometry());
    }

    void stateThatWouldHideAToolBarIsNotTaken()
    {
        Desk desk;
        QToolBar* bar = desk.addToolBar(u"a"_s);
        desk.window.show();
        bar->hide();
        const QJsonObject saved = desk.saved();
        bar->show();
        desk.load(saved);
        QVERIFY(bar->isVisible());
    }

    void stateWithHugeCountsIsLeftAlone_data()
    {
        QTest::addColumn<QByteArray>("toolBars");
        QTest::newRow("lines of toolbars") << QByteArray("fc7fffffff");
        QTest::newRow("toolbars in a line") << QByteArray("fc00000001000000027fffffff");
    }
    void stateWithHugeCountsIsLeftAlone()
    {
        QFETCH(QByteArray, toolBars);
        Desk desk;
        const QByteArray head = QByteArray::fromHex("000000ff00000000fd00000000") + QByteArray(24, '\0');
        const QByteArray state = (head + QByteArray::fromHex(toolBars)).toBase64();
        // Qt would loop as often as the count says, far beyond the test's time.
        desk.load("{\"windowState\":\"" + state + "\",\"items\":[{\"type\":\"AnalogGauge\"}]}");
        QCOMPARE(desk.scene.dashboardItems().size(), 1);
    }

    void readsRecordsOfAnyKind_data()
    {
        QTest::addColumn<QByteArray>("record");
        QTest::addColumn<QRectF>("frame");
        QTest::addColumn<double>("z");
        QTest::newRow("usual") << QByteArray("'x':3,'y':4.5,'width':95,'height':41,'z':7")
                               << QRectF(3, 4.5, 100, 60) << 7.0;
        QTest::newRow("other types") << QByteArray("'x':'1','y':[],'width':{},'height':null,'z':'2'")
                                     << QRectF(0, 0, 80, 60) << 0.0;
        QTest::newRow("huge") << QByteArray("'x':1e300,'y':-1e300,'width':1e300,'height':1e300,'z':1e300")
                              << QRectF(1e6, -1e6, 16000, 16000) << 1e12;
    }
    void readsRecordsOfAnyKind()
    {
        QFETCH(QByteArray, record);
        Desk desk;
        desk.load(json("{'items':[{'type':'StateIndicator','signals':7,'config':[]," + record + "}]}"));
        const QList<DashboardItem*> items = desk.scene.dashboardItems();
        QCOMPARE(items.size(), 1);
        QTEST(items.first()->sceneBoundingRect(), "frame");
        QTEST(items.first()->zValue(), "z");
    }

    void refusesWhatIsNoLayout_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("cut short") << json("{'items':[{'type':'Anal");
        QTest::newRow("no object") << QByteArray("[]");
        QTest::newRow("far too many items")
            << json("{'items':[" + QByteArray("{'type':'AnalogGauge'},").repeated(100'000) + "{}]}");
    }
    void refusesWhatIsNoLayout()
    {
        QFETCH(QByteArray, bytes);
        Desk desk;
        desk.add("AnalogGauge", QRectF(0, 0, 200, 200));
        writeFile(desk.path, bytes);
        ModalAnswer answer;
        answer.chooseFile(desk.path).accept();
        desk.layout.load(desk.dir.path());
        QCOMPARE(answer.titles(), QStringList({u"Load Layout"_s, u"Error"_s}));
        QCOMPARE(answer.texts().constLast(), u"Invalid layout format."_s);
        QCOMPARE(desk.scene.dashboardItems().size(), 1);
    }

    void skipsUnknownTypes()
    {
        Desk desk;
        desk.load(json("{'items':[{'type':'Gauge'},7,null,{},{'type':'AnalogGauge'}]}"));
        QCOMPARE(desk.scene.dashboardItems().size(), 1);
    }

    void loadedItemIsConfiguredAndCanBeArrangedAtOnce()
    {
        Desk desk;
        desk.setDesignMode(true);
        desk.load(json(
            "{'items':[{'type':'AnalogGauge','signals':['A',3,null,'B'],'config':{'min':-5,'max':20}}]}"));
        const DashboardItem* item = desk.scene.dashboardItems().value(0);
        QVERIFY(item);
        QCOMPARE(item->widget()->assignedSignalList(), QStringList({u"A"_s, u"B"_s}));
        QCOMPARE(item->widget()->saveConfig(), (QJsonObject{{u"min"_s, -5}, {u"max"_s, 20}}));
        QVERIFY(item->flags().testFlag(QGraphicsItem::ItemIsMovable));
    }

    void destroysWhatWasOnTheCanvas()
    {
        Desk desk;
        const QPointer<DashboardWidget> old = desk.add("AnalogGauge", QRectF(0, 0, 200, 200))->widget();
        desk.load(json("{'items':[]}"));
        QVERIFY(desk.scene.dashboardItems().isEmpty());
        QTRY_VERIFY(!old);
    }

    void shortWriteKeepsTheOldFile()
    {
        Desk desk;
        writeFile(desk.path, "precious");
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit small{100, before.rlim_max};
        std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &small);
        const QString problem = desk.layout.saveTo(desk.path); // as on a full disk
        setrlimit(RLIMIT_FSIZE, &before);
        QCOMPARE(problem, u"Could not save layout."_s);
        QCOMPARE(readFile(desk.path), QByteArray("precious"));
    }
};

QTEST_MAIN(TestLayoutFile)
#include "tst_layoutfile.moc"
