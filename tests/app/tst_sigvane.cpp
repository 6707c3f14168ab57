#include "app/CommandLine.h"
#include "app/Sigvane.h"
#include "app/ValueRouter.h"
#include "app/WidgetPalette.h"
#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "licensing/LicenseCheck.h"
#include "support/ModalAnswer.h"
#include "widgets/DashboardWidget.h"

#include <QAction>
#include <QDir>
#include <QLabel>
#include <QMenuBar>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

class TestSigvane : public QObject
{
    Q_OBJECT

    LicenseCheck m_license{true, QStringLiteral("All features")};
    QTemporaryDir m_dir;

    static QAction* action(const Sigvane& window, const char* text)
    {
        const QList<QAction*> all = window.findChildren<QAction*>();
        for (QAction* found : all) {
            if (found->text() == QString::fromUtf8(text))
                return found;
        }
        return nullptr;
    }
    static QString status(const Sigvane& window) { return window.statusBar()->currentMessage(); }
    static QStringList types(const Sigvane& window)
    {
        QStringList found;
        const QList<DashboardItem*> items = window.scene()->dashboardItems();
        for (const DashboardItem* item : items)
            found.append(item->widget()->typeName());
        return found;
    }
    static void doubleClick(WidgetPalette* palette, int row)
    {
        const QPoint pos = palette->visualItemRect(palette->item(row)).center();
        QTest::mouseClick(palette->viewport(), Qt::LeftButton, {}, pos);
        QTest::mouseDClick(palette->viewport(), Qt::LeftButton, {}, pos);
    }

private Q_SLOTS:
    void startsInIdle()
    {
        Sigvane window;
        QCOMPARE(window.mode(), Sigvane::Idle);
        QCOMPARE(status(window), QStringLiteral("Idle"));
        auto* chip = window.findChild<QLabel*>(QStringLiteral("licenseChip"));
        QCOMPARE(chip->text(), QStringLiteral("Unknown license status"));
        window.setLicenseCheck(&m_license);
        QCOMPARE(chip->text(), QStringLiteral("All features"));
        QVERIFY(!window.findChild<WidgetPalette*>()->isEnabled());
        QCOMPARE(gSignalParser, nullptr);

        QStringList bars;
        const QList<QToolBar*> toolBars = window.findChildren<QToolBar*>();
        for (const QToolBar* bar : toolBars)
            bars.append(bar->windowTitle() + QLatin1Char('/') + bar->objectName());
        QCOMPARE(bars, QStringList({QStringLiteral("Controls/tb_controls"),
                                    QStringLiteral("Export/tb_export"), QStringLiteral("I/O/tb_io")}));
        for (const char* text : {"Record", "Play", "Signals", "Events"})
            QVERIFY2(action(window, text) && !action(window, text)->isEnabled(), text);
        for (const char* text : {"Design", "Save Layout", "Load Layout", "Stop"})
            QVERIFY2(action(window, text) && action(window, text)->isEnabled(), text);
    }

    void designTogglesPaletteAndItems()
    {
        Sigvane window;
        window.setLicenseCheck(&m_license);
        window.addWidget(QStringLiteral("AnalogGauge"));
        DashboardItem* item = window.scene()->dashboardItems().first();
        const auto movable = [item] { return bool(item->flags() & QGraphicsItem::ItemIsMovable); };
        QVERIFY(!movable());
        action(window, "Design")->trigger();
        QCOMPARE(window.mode(), Sigvane::Design);
        QCOMPARE(status(window), QStringLiteral("Design Mode"));
        QVERIFY(movable() && window.scene()->isDesignMode());
        QVERIFY(window.findChild<WidgetPalette*>()->isEnabled());
        action(window, "Design")->trigger();
        QCOMPARE(window.mode(), Sigvane::Idle);
        QVERIFY(!movable() && !window.scene()->isDesignMode());
        QVERIFY(!window.findChild<WidgetPalette*>()->isEnabled());
    }

    void modeTable_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<bool>("stop");
        QTest::addColumn<int>("to");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, int from, bool stop, int to, const char* text) {
            QTest::newRow(name) << from << stop << to << QString::fromUtf8(text);
        };
        row("design, stop", Sigvane::Design, true, Sigvane::Idle, "Idle");
        row("play, stop", Sigvane::Play, true, Sigvane::Pause, "Pause...");
        row("pause, stop", Sigvane::Pause, true, Sigvane::Idle, "Idle");
        row("idle, stop", Sigvane::Idle, true, Sigvane::Idle, "Idle");
        row("play, design", Sigvane::Play, false, Sigvane::Design, "Design Mode");
        row("pause, design", Sigvane::Pause, false, Sigvane::Design, "Design Mode");
    }
    void modeTable()
    {
        QFETCH(int, from);
        QFETCH(bool, stop);
        Sigvane window;
        window.setMode(Sigvane::Mode(from));
        QCOMPARE(window.router()->isLive(), from != Sigvane::Play && from != Sigvane::Pause);
        QAction* stopAction = action(window, from == Sigvane::Play ? "Pause" : "Stop");
        QVERIFY(stopAction);
        QCOMPARE(stopAction->toolTip(),
                 from == Sigvane::Play ? QStringLiteral("Pause playback") : QStringLiteral("Stop"));
        (stop ? stopAction : action(window, "Design"))->trigger();
        QTEST(int(window.mode()), "to");
        QTEST(status(window), "text");
    }

    void refusedModeHasLeftTheOldOne()
    {
        Sigvane window;
        window.setMode(Sigvane::Design);
        window.setMode(Sigvane::Record);
        QCOMPARE(window.mode(), Sigvane::Design);
        QCOMPARE(status(window), QStringLiteral("Design Mode"));
        QVERIFY(!window.findChild<WidgetPalette*>()->isEnabled());
    }

    void addsWidgetsFromThePalette()
    {
        Sigvane window;
        window.setLicenseCheck(&m_license);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto* palette = window.findChild<WidgetPalette*>();
        doubleClick(palette, 0); // disabled: nothing happens
        QVERIFY(types(window).isEmpty());
        window.setMode(Sigvane::Design);
        doubleClick(palette, 0);
        palette->setCurrentRow(1);
        QTest::keyClick(palette, Qt::Key_Return);
        QCOMPARE(types(window), QStringList({palette->item(1)->text(), palette->item(0)->text()}));
        const DashboardItem* item = window.scene()->dashboardItems().first();
        QCOMPARE(item->sceneBoundingRect(), QRectF(100, 100, 250, 250));
        QVERIFY(item->flags() & QGraphicsItem::ItemIsMovable);
    }

    void sixthWidgetNeedsALicense()
    {
        LicenseCheck license(false, QStringLiteral("Trial"));
        Sigvane window;
        window.setLicenseCheck(&license);
        for (int i = 0; i < 5; ++i)
            window.addWidget(QStringLiteral("DigitalDisplay"));
        QCOMPARE(types(window).size(), 5);
        ModalAnswer answer;
        answer.press(QMessageBox::Ok);
        window.addWidget(QStringLiteral("DigitalDisplay"));
        QCOMPARE(types(window).size(), 5);
        QCOMPARE(answer.titles(), QStringList(QStringLiteral("Limit reached")));
        QCOMPARE(answer.texts(),
                 QStringList(QStringLiteral("In the unlicensed version you can add up to 5 widgets.")));
        license.setAnswer(true, QStringLiteral("Bought"));
        window.addWidget(QStringLiteral("DigitalDisplay"));
        QCOMPARE(types(window).size(), 6);
        answer.press(QMessageBox::Ok);
        action(window, "License &Status…")->trigger();
        QCOMPARE(answer.texts().last(), QStringLiteral("Bought"));
    }

    void reloadsDefinitionsAndMapsAnew()
    {
        Sigvane window;
        window.setLicenseCheck(&m_license);
        action(window, "&Reload Definitions")->trigger(); // no project yet: only said
        const QString path = m_dir.filePath(QStringLiteral("dashboard_signals.def"));
        const auto define = [&path](const char* scale) {
            QFile file(path);
            return file.open(QIODevice::WriteOnly) &&
                   file.write(QByteArray("DASHBOARD_MAPPING(M, 0, ") + scale +
                              ")\nDASHBOARD_SIGNAL(T, \"t\", M)\n") > 0;
        };
        QVERIFY(define("2"));
        const QSignalSpy changed(&window, &Sigvane::signalsDefChanged);
        window.setMode(Sigvane::Design);
        QVERIFY(window.setProjectDir(m_dir.path()));
        QCOMPARE(window.mode(), Sigvane::Idle); // a project is opened through Idle
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.first().first().toString(), path);
        QCOMPARE(window.windowTitle(), QStringLiteral("Sigvane — ") + m_dir.path());
        QCOMPARE(status(window), QStringLiteral("Project: ") + m_dir.path());

        window.addWidget(QStringLiteral("DigitalDisplay"));
        DashboardWidget* display = window.scene()->dashboardItems().first()->widget();
        display->assignSignals({QStringLiteral("T")});
        const auto* label = display->findChild<QLabel*>();
        window.router()->routeLiveValues({{QStringLiteral("T"), 21.0}});
        display->grab();
        QCOMPARE(label->text(), QStringLiteral("42.0"));
        QVERIFY(define("3"));
        action(window, "&Reload Definitions")->trigger();
        display->grab();
        QCOMPARE(label->text(), QStringLiteral("63.0"));
    }

    void startsWithWhatCanBeUsed()
    {
        CommandLine wanted;
        wanted.projectDir = m_dir.filePath(QStringLiteral("missing"));
        wanted.layoutFile = m_dir.filePath(QStringLiteral("missing.json"));
        wanted.portName = m_dir.filePath(QStringLiteral("missing-port"));
        Sigvane window;
        window.startWith(wanted);
        for (const QString& name : {wanted.projectDir, wanted.layoutFile, wanted.portName})
            QVERIFY2(status(window).contains(name), qPrintable(status(window)));
        QCOMPARE(gSignalParser, nullptr);
        QCOMPARE(window.mode(), Sigvane::Idle);
    }

    void definitionsOfAnotherName()
    {
        const QString path = m_dir.filePath(QStringLiteral("other/rig.def"));
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("DASHBOARD_SIGNAL(A, \"a\", M)\n") > 0);
        file.close();
        CommandLine wanted;
        wanted.definitionsFile = path;
        Sigvane window;
        window.startWith(wanted);
        QCOMPARE(window.projectDir(), QString());
        QVERIFY(gSignalParser && gSignalParser->signalList().size() == 1);
        QCOMPARE(window.windowTitle(), QStringLiteral("Sigvane — ") + path);
        QCOMPARE(QDir(QFileInfo(path).path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList());
    }
};

QTEST_MAIN(TestSigvane)
#include "tst_sigvane.moc"
