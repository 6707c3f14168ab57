#include "support/Canvas.h"
#include "support/WidgetPicture.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

// The mouse on a trend plot that stands on the canvas: every event goes to the view.
class TestTrendPlotMouse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_canvas = std::make_unique<Canvas>();
        m_item = m_canvas->add("TrendPlot", QRectF(140, 110, 400, 300));
        m_plot = qobject_cast<TrendPlotWidget*>(m_item->widget());
        m_plot->assignSignals({"A", "B"});
        m_plot->setExternalTimeEnabled(true);
        m_plot->setExternalNowMs(10'000);
        m_plot->setValueForSignalAt("A", 1.0, 2.0);
        m_plot->setValueForSignalAt("B", 2.0, 2.0);
        QVERIFY(QTest::qWaitForWindowExposed(&m_canvas->view));
        m_canvas->view.grab();
    }

    void cleanup() { m_canvas.reset(); }

    void placesNoMarkerWithoutAlt()
    {
        click(m_plot->plotRect().center() + QPoint(0, 60), Qt::NoModifier);
        QVERIFY(m_plot->markers().isEmpty());
    }

    void placesMarker_data()
    {
        QTest::addColumn<bool>("replay");
        QTest::addColumn<Marker::Kind>("kind");
        QTest::newRow("live") << false << Marker::Kind::Screen;
        QTest::newRow("replay") << true << Marker::Kind::Data;
    }

    void placesMarker()
    {
        QFETCH(bool, replay);
        QFETCH(Marker::Kind, kind);
        m_plot->setExternalTimeEnabled(replay);
        const QRect plot = m_plot->plotRect();
        const qint64 expectedMs = m_plot->currentNowMs() - 7500;
        click(QPoint(plot.left() + plot.width() / 4, plot.center().y()), Qt::AltModifier);
        QCOMPARE(m_plot->markers().size(), 1);
        const Marker marker = m_plot->markers().first();
        QCOMPARE(marker.kind, kind);
        QCOMPARE(marker.label, QString());
        QVERIFY(std::abs(marker.xFrac - 0.25) < 0.01);
        QVERIFY(marker.tMs >= expectedMs - 100); // a column is 30 ms wide
        QVERIFY(marker.tMs <= m_plot->currentNowMs() - 7500 + 100);
    }

    void togglesChannelOnLegend()
    {
        const QPoint row = m_plot->plotRect().topLeft() + QPoint(40, 6 + 16 + 8);
        QCOMPARE(m_plot->currentYRange(0), std::pair(0.9, 2.1));
        click(row, Qt::AltModifier);
        QCOMPARE(m_plot->currentYRange(0), std::pair(0.0, 2.0));
        click(row, Qt::AltModifier);
        QCOMPARE(m_plot->currentYRange(0), std::pair(0.9, 2.1));
        QVERIFY(m_plot->markers().isEmpty());
    }

    void opensLabelEditorInSight_data()
    {
        QTest::addColumn<bool>("atScreenEdge");
        QTest::newRow("middle of the screen") << false;
        QTest::newRow("edge of the screen") << true;
    }

    void opensLabelEditorInSight()
    {
        QFETCH(bool, atScreenEdge);
        const QPoint pos = m_plot->plotRect().center() + QPoint(30, 40);
        if (atScreenEdge)
            m_canvas->view.move(m_canvas->view.screen()->geometry().bottomRight() - inView(pos) -
                                QPoint(9, 9));
        const QPointer<QWidget> editor = openLabelEditor(pos);
        QVERIFY(!editor->graphicsProxyWidget());
        QCOMPARE(editor->windowTitle(), "Marker label");
        const QPoint wanted = global(pos) + QPoint(8, 8);
        const QRect screen = editor->screen()->availableGeometry();
        const QRect frame = editor->geometry() & screen;
        QVERIFY2(frame.width() > editor->width() - 4, "cut off");
        QVERIFY2(frame.height() > editor->height() - 4, "cut off");
        if (screen.contains(QRect(wanted, editor->size())))
            QVERIFY((editor->pos() - wanted).manhattanLength() <= 4); // a platform may add a frame
    }

    void editsLabel_data()
    {
        QTest::addColumn<Qt::Key>("lastKey");
        QTest::addColumn<QString>("label");
        QTest::newRow("Return takes it") << Qt::Key_Return << "valve opens";
        QTest::newRow("Esc leaves it") << Qt::Key_Escape << "";
    }

    void editsLabel()
    {
        QFETCH(Qt::Key, lastKey);
        QFETCH(QString, label);
        const QPointer<QWidget> editor = openLabelEditor(m_plot->plotRect().center());
        QTest::keyClicks(editor->findChild<QLineEdit*>(), "valve opens");
        QTest::keyClick(editor->findChild<QLineEdit*>(), lastKey);
        QTRY_VERIFY(!editor);
        QCOMPARE(m_plot->markers().value(0).label, label);
    }

    void menuNeedsAlt()
    {
        const QPoint pos = inView(m_plot->plotRect().center());
        QTest::mouseClick(viewport(), Qt::RightButton, Qt::NoModifier, pos);
        QCoreApplication::processEvents();
        QCOMPARE(QApplication::activePopupWidget(), nullptr);
    }

    void opensMenuAtTheMouse()
    {
        const QPoint pos = m_plot->plotRect().center();
        const QPointer<QMenu> menu = openMenu(pos);
        QVERIFY(!menu->graphicsProxyWidget());
        QCOMPARE(menu->pos(), global(pos));
        menu->close();
        QTRY_VERIFY(!menu);
    }

    void deletesMarkersByMenu_data()
    {
        QTest::addColumn<int>("entry");
        QTest::addColumn<QStringList>("left");
        QTest::newRow("Delete all markers") << 0 << QStringList();
        QTest::newRow("Delete screen markers") << 1 << QStringList{"D"};
        QTest::newRow("Delete data markers") << 2 << QStringList{"S"};
    }

    void deletesMarkersByMenu()
    {
        QFETCH(int, entry);
        QFETCH(QStringList, left);
        m_plot->loadConfig({{"markers", QJsonArray{QJsonObject{{"kind", "screen"}, {"label", "S"}},
                                                   QJsonObject{{"kind", "data"}, {"label", "D"}}}}});
        QMenu* menu = openMenu(m_plot->plotRect().center());
        QCOMPARE(menu->actions().size(), 3);
        QAction* action = menu->actions().at(entry);
        QCOMPARE(action->text(), QTest::currentDataTag());
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        QStringList labels;
        for (const Marker& marker : m_plot->markers())
            labels.append(marker.label);
        QCOMPARE(labels, left);
    }

    void givesTheMouseBackAfterPopups_data()
    {
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::newRow("menu") << Qt::RightButton;
        QTest::newRow("label") << Qt::LeftButton;
    }

    // A pop-up swallows the release of the press that opened it.
    void givesTheMouseBackAfterPopups()
    {
        QFETCH(Qt::MouseButton, button);
        DashboardItem* other = m_canvas->add("TrendPlot", QRectF(550, 110, 240, 300));
        auto* plot = qobject_cast<TrendPlotWidget*>(other->widget());
        plot->assignSignals({"A"});
        const QPointF there = other->mapToScene(plot->plotRect().center());
        const QImage before = picture(*plot);
        QTest::mousePress(viewport(), button, Qt::AltModifier | Qt::ShiftModifier,
                          inView(m_plot->plotRect().center()));
        QTRY_VERIFY(QApplication::activePopupWidget());
        QTest::mouseRelease(QApplication::activePopupWidget(), button, {}, QPoint(1, 1));
        QApplication::activePopupWidget()->close();
        m_canvas->move(there, Qt::NoButton);
        QVERIFY(picture(*plot) != before);
        QTest::mouseClick(viewport(), Qt::LeftButton, Qt::AltModifier, m_canvas->at(there));
        QCOMPARE(plot->markers().size(), 1);
    }

    void crosshairFollowsHover()
    {
        const QImage before = picture(*m_plot);
        hover();
        QVERIFY(picture(*m_plot) != before);
        m_canvas->move(QPointF(5, 5), Qt::NoButton);
        QCOMPARE(picture(*m_plot), before);
    }

    void crosshairGoesWithDesignMode()
    {
        const QImage before = picture(*m_plot);
        hover();
        m_canvas->setDesignMode(true); // the item takes the mouse from under the crosshair
        QCOMPARE(picture(*m_plot), before);
    }

    void placesNoMarkerInDesignMode()
    {
        m_canvas->setDesignMode(true);
        click(m_plot->plotRect().center(), Qt::AltModifier);
        QVERIFY(m_plot->markers().isEmpty());
    }

private:
    QWidget* viewport() const { return m_canvas->view.viewport(); }
    QPoint inView(const QPoint& pos) const { return m_canvas->at(m_item->mapToScene(pos)); }
    QPoint global(const QPoint& pos) const { return viewport()->mapToGlobal(inView(pos)); }
    void click(const QPoint& pos, Qt::KeyboardModifiers modifiers) const
    {
        QTest::mouseClick(viewport(), Qt::LeftButton, modifiers, inView(pos));
    }
    void hover() const { m_canvas->move(m_item->mapToScene(m_plot->plotRect().center()), Qt::NoButton); }
    QWidget* openLabelEditor(const QPoint& pos) const
    {
        click(pos, Qt::AltModifier | Qt::ShiftModifier);
        return awaitedPopup();
    }
    QMenu* openMenu(const QPoint& pos) const
    {
        QTest::mouseClick(viewport(), Qt::RightButton, Qt::AltModifier, inView(pos));
        return qobject_cast<QMenu*>(awaitedPopup());
    }
    static QWidget* awaitedPopup()
    {
        if (!QTest::qWaitFor([] { return QApplication::activePopupWidget() != nullptr; }))
            qFatal("no popup");
        return QApplication::activePopupWidget();
    }

    std::unique_ptr<Canvas> m_canvas;
    DashboardItem* m_item = nullptr;
    TrendPlotWidget* m_plot = nullptr;
};

QTEST_MAIN(TestTrendPlotMouse)
#include "tst_trendplotmouse.moc"
