#include "canvas/LayoutFile.h"
#include "support/Canvas.h"
#include "support/ModalAnswer.h"
#include "support/SmallDisk.h"
#include "widgets/DashboardWidget.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMainWindow>
#include <QTemporaryDir>
#include <QToolBar>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

static QByteArray read(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

static QJsonObject readJson(const QString& path) { return QJsonDocument::fromJson(read(path)).object(); }

/// JSON that is written with single quotes here, so that it can be read.
static QByteArray json(QByteArray text) { return text.replace('\'', '"'); }

// A canvas beside a window, and a layout file for both.
struct Desk : Canvas
{
    QMainWindow window;
    LayoutFile layout{&window, &scene};
    QTemporaryDir dir;
    QString path = dir.filePath(u"layout.json"_s);

    bool write(const QByteArray& bytes) const
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }
    bool load(const QByteArray& bytes) { return write(bytes) && layout.loadFrom(path).isEmpty(); }
};

class TestLayoutFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void survivesSaveAndLoad()
    {
        Desk desk;
        const char* types[] = {"DigitalDisplay", "AnalogGauge", "StateIndicator"};
        const double z[] = {0.5, 2, -1};
        for (int i = 0; i < 3; ++i) {
            DashboardItem* item = desk.add(types[i], QRectF(100 * i + 10, -30, 250, 180));
            item->setZValue(z[i]);
            item->widget()->assignSignals({u"A:x"_s, u"B"_s});
        }
        const QString folder = desk.dir.filePath(u"new/layouts"_s); // made by the save
        ModalAnswer answer;
        answer.accept();
        desk.layout.save(folder);
        QCOMPARE(answer.titles(), QStringList(u"Save Layout"_s));
        const QString saved = folder + u"/layout.json"_s;
        QCOMPARE(desk.layout.loadFrom(saved), QString());
        QCOMPARE(desk.layout.saveTo(desk.path), QString());
        const QJsonArray items = readJson(saved).value(u"items"_s).toArray();
        QCOMPARE(readJson(desk.path).value(u"items"_s).toArray(), items);
        QCOMPARE(items.size(), 3);
        QCOMPARE(QJsonDocument(items[2].toObject()).toJson(QJsonDocument::Compact), // the lowest
                 json("{'config':{'corner':10,'groupId':''},'height':180,'signals':['A:x','B'],"
                      "'type':'StateIndicator','width':250,'x':210,'y':-30,'z':0}"));
    }

    void windowComesBackAsItWas()
    {
        Desk desk;
        QToolBar* bar = nullptr;
        for (const QString& name : {u"a"_s, u"b"_s}) {
            bar = desk.window.addToolBar(name);
            bar->setObjectName(name);
        }
        desk.window.insertToolBarBreak(bar);
        desk.window.resize(500, 400);
        desk.window.show();
        QCOMPARE(desk.layout.saveTo(desk.path), QString());
        QJsonObject saved = readJson(desk.path);
        desk.window.removeToolBarBreak(bar);
        desk.window.resize(300, 300);
        QVERIFY(desk.load(QJsonDocument(saved).toJson()));
        QCOMPARE(desk.window.size(), QSize(500, 400));
        QVERIFY(desk.window.toolBarBreak(bar));

        bar->hide(); // a state that would hide a toolbar is not taken
        saved.insert(u"windowState"_s, QString::fromLatin1(desk.window.saveState().toBase64()));
        bar->show();
        saved.insert(u"isMaximized"_s, true);
        saved.insert(u"isFullScreen"_s, true);
        QVERIFY(desk.load(QJsonDocument(saved).toJson()));
        QVERIFY(bar->isVisible());
        QVERIFY(desk.window.isFullScreen());
    }

    void windowStateWithHugeCountsIsLeftAlone()
    {
        Desk desk;
        // Qt would loop as often as these counts of toolbar lines and toolbars say.
        const QByteArray head = QByteArray::fromHex("000000ff00000000fd00000000") + QByteArray(24, '\0');
        for (const char* rest : {"fc7fffffff", "fc00000001000000027fffffff"}) {
            const QByteArray state = (head + QByteArray::fromHex(rest)).toBase64();
            QVERIFY(desk.load("{\"windowState\":\"" + state + "\"}")); // within the test's time
        }
    }

    void readsRecordsOfAnyKind()
    {
        Desk desk;
        const QByteArray type = "{'type':'StateIndicator',";
        QVERIFY(desk.load(json("{'items':[" + type + "'x':3,'y':4.5,'width':95,'height':41,'z':7}," + type +
                               "'x':'1','y':[],'width':{},'height':null,'z':'2','signals':7,'config':[]}," +
                               type + "'x':1e300,'y':-1e300,'width':1e300,'height':1e300,'z':1e300}]}")));
        QList<QRectF> frames;
        for (const DashboardItem* item : desk.scene.dashboardItems())
            frames.append(item->sceneBoundingRect());
        const QRectF huge(1e6, -1e6, 16000, 16000);
        QCOMPARE(frames, QList<QRectF>({huge, {3, 4.5, 100, 60}, {0, 0, 80, 60}}));
        QCOMPARE(desk.scene.highestZ(), 1e12);
    }

    void refusesWhatIsNoLayout()
    {
        Desk desk;
        desk.add("AnalogGauge", QRectF(0, 0, 200, 200));
        QCOMPARE(desk.layout.loadFrom(desk.path), u"Could not load layout."_s); // no such file
        const QByteArray flood =
            "{'items':[" + QByteArray("{'type':'AnalogGauge'},").repeated(100'000) + "{}]}";
        for (const QByteArray& bad : {json("{'items':[{'type':'Anal"), json(flood)}) {
            QVERIFY(desk.write(bad));
            ModalAnswer answer;
            answer.chooseFile(desk.path).accept();
            desk.layout.load(desk.dir.path());
            QCOMPARE(answer.titles(), QStringList({u"Load Layout"_s, u"Error"_s}));
            QCOMPARE(answer.texts().last(), u"Invalid layout format."_s);
            QCOMPARE(desk.scene.dashboardItems().size(), 1);
        }
    }

    void skipsUnknownTypesAndClearsTheCanvas()
    {
        Desk desk;
        desk.setDesignMode(true);
        const QPointer<DashboardWidget> old = desk.add("AnalogGauge", QRectF(0, 0, 200, 200))->widget();
        QVERIFY(desk.load(json("{'items':[{'type':'Gauge'},7,null,{},{'type':'AnalogGauge',"
                               "'signals':['A',3,null,'B'],'config':{'min':-5.5,'max':20.9}}],"
                               "'windowGeometry':'####','windowState':17}")));
        const QList<DashboardItem*> items = desk.scene.dashboardItems();
        QCOMPARE(items.size(), 1);
        QCOMPARE(items.first()->widget()->assignedSignalList(), QStringList({u"A"_s, u"B"_s}));
        QCOMPARE(items.first()->widget()->saveConfig(), (QJsonObject{{u"min"_s, -5}, {u"max"_s, 20}}));
        QVERIFY(items.first()->flags() & QGraphicsItem::ItemIsMovable); // in design mode at once
        QTRY_VERIFY(!old);
    }

    void failedSaveKeepsTheOldFile()
    {
        Desk desk;
        QVERIFY(desk.write("precious"));
        // What a full disk does: a write comes back short.
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit small{100, before.rlim_max};
        std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &small);
        const QString problem = desk.layout.saveTo(desk.path);
        setrlimit(RLIMIT_FSIZE, &before);
        QCOMPARE(problem, u"Could not save layout."_s);
        QCOMPARE(read(desk.path), QByteArray("precious"));
        QCOMPARE(desk.layout.saveTo(u"/dev/full"_s), problem);

        const SmallDisk disk(desk.dir.filePath(u"disk"_s), "size=8k");
        if (!disk.isMounted())
            QSKIP("mounting a small disk is not permitted here");
        desk.path = desk.dir.filePath(u"disk/layout.json"_s);
        QVERIFY(desk.write("precious"));
        for (int i = 0; i < 100; ++i)
            desk.add("DigitalDisplay", QRectF(0, 0, 100, 100));
        QCOMPARE(desk.layout.saveTo(desk.path), problem);
        QCOMPARE(read(desk.path), QByteArray("precious"));
    }
};

QTEST_MAIN(TestLayoutFile)
#include "tst_layoutfile.moc"
