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

    void placesMarkers()
    {
        const QRect plot = m_plot->plotRect();
        click(plot.center() + QPoint(0, 60), Qt::NoModifier);
        click(QPoint(10, plot.center().y()), Qt::AltModifier);
        QVERIFY(m_plot->markers().isEmpty());
        for (const bool replay : {false, true}) {
            m_plot->setExternalTimeEnabled(replay);
            m_plot->clearAllMarkers();
            click(QPoint(plot.left() + plot.width() / 4, plot.center().y()), Qt::AltModifier);
            QCOMPARE(m_plot->markers().size(), 1);
            const Marker marker = m_plot->markers().first();
            QCOMPARE(marker.kind, replay ? Marker::Kind::Data : Marker::Kind::Screen);
            QVERIFY(std::abs(marker.xFrac - 0.25) < 0.01 && marker.label.isEmpty());
            QVERIFY(std::abs(marker.tMs - (m_plot->currentNowMs() - 7500)) < 100);
        }
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

    void editsLabelInPopup_data()
    {
        QTest::addColumn<bool>("atScreenEdge");
        QTest::newRow("middle of the screen") << false;
        QTest::newRow("edge of the screen") << true;
    }

    void editsLabelInPopup()
    {
        QFETCH(bool, atScreenEdge);
        const QPoint pos = m_plot->plotRect().center() + QPoint(30, 40);
        if (atScreenEdge)
            m_canvas->view.move(m_canvas->view.screen()->geometry().bottomRight() - inView(pos) -
                                QPoint(9, 9));
        click(pos, Qt::AltModifier | Qt::ShiftModifier);
        QTRY_VERIFY(QApplication::activePopupWidget());
        QPointer<QWidget> editor = QApplication::activePopupWidget();
        QVERIFY(!editor->graphicsProxyWidget());
        QCOMPARE(editor->windowTitle(), "Marker label");
        const QPoint wanted = global(pos) + QPoint(8, 8);
        const QRect screen = editor->screen()->availableGeometry();
        const QRect frame = editor->geometry() & screen;
        QVERIFY2(frame.width() > editor->width() - 4 && frame.height() > editor->height() - 4, "cut off");
        if (screen.contains(QRect(wanted, editor->size())))
            QVERIFY((editor->pos() - wanted).manhattanLength() <= 4); // a platform may add a frame
        auto* edit = editor->findChild<QLineEdit*>();
        QTest::keyClicks(edit, "valve opens");
        QTest::keyClick(edit, Qt::Key_Return);
        QTRY_VERIFY(!editor);
        QCOMPARE(m_plot->markers().value(0).label, "valve opens");

        m_plot->promptLabelForMarker(0, global(pos));
        editor = QApplication::activePopupWidget();
        QTest::keyClicks(editor->findChild<QLineEdit*>(), "no");
        QTest::keyClick(editor->findChild<QLineEdit*>(), Qt::Key_Escape);
        QTRY_VERIFY(!editor);
        QCOMPARE(m_plot->markers().value(0).label, "valve opens");
        m_plot->promptLabelForMarker(1, global(pos));
        QVERIFY(!QApplication::activePopupWidget());
    }

    void deletesMarkersByMenu()
    {
        m_plot->loadConfig({{"markers", QJsonArray{QJsonObject{{"kind", "screen"}, {"label", "S"}},
                                                   QJsonObject{{"kind", "data"}, {"label", "D"}}}}});
        const QPoint pos = m_plot->plotRect().center();
        QTest::mouseClick(viewport(), Qt::RightButton, Qt::NoModifier, inView(pos));
        QVERIFY(!QApplication::activePopupWidget());
        QTest::mouseClick(viewport(), Qt::RightButton, Qt::AltModifier, inView(pos));
        QTRY_VERIFY(QApplication::activePopupWidget());
        const QPointer<QMenu> menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu && !menu->graphicsProxyWidget());
        QCOMPARE(menu->pos(), global(pos));
        QStringList texts;
        for (const QAction* action : menu->actions())
            texts.append(action->text());
        QCOMPARE(texts, QStringList({"Delete all markers", "Delete screen markers", "Delete data markers"}));
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions().at(1)).center());
        QCOMPARE(m_plot->markers().size(), 1);
        QCOMPARE(m_plot->markers().first().label, "D");
        QTRY_VERIFY(!menu);
    }

    // A pop-up swallows the release of the press that opened it.
    void givesTheMouseBackAfterPopups()
    {
        DashboardItem* other = m_canvas->add("TrendPlot", QRectF(550, 110, 240, 300));
        auto* plot = qobject_cast<TrendPlotWidget*>(other->widget());
        plot->assignSignals({"A"});
        const QPointF there = other->mapToScene(plot->plotRect().center());
        for (const auto button : {Qt::RightButton, Qt::LeftButton}) { // menu, label
            plot->clearAllMarkers();
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
            m_canvas->move(QPointF(5, 5), Qt::NoButton);
        }
    }

    void crosshairFollowsHover()
    {
        const QImage before = picture(*m_plot);
        const QPoint pos = m_plot->plotRect().center();
        m_canvas->move(m_item->mapToScene(pos), Qt::NoButton);
        QVERIFY(picture(*m_plot) != before);
        m_canvas->move(QPointF(5, 5), Qt::NoButton);
        QCOMPARE(picture(*m_plot), before);
        m_canvas->move(m_item->mapToScene(pos), Qt::NoButton);
        m_canvas->setDesignMode(true); // the item takes the mouse from under the crosshair
        QCOMPARE(picture(*m_plot), before);
    }

    void leavesMouseToItemInDesignMode()
    {
        m_canvas->setDesignMode(true);
        const QPoint pos = m_plot->plotRect().center();
        click(pos, Qt::AltModifier);
        QVERIFY(m_plot->markers().isEmpty());
        m_canvas->drag(m_item->mapToScene(pos), m_item->mapToScene(pos + QPoint(50, 20)));
        QCOMPARE(m_item->pos(), QPointF(190, 130));
    }

private:
    QWidget* viewport() const { return m_canvas->view.viewport(); }
    QPoint inView(const QPoint& pos) const { return m_canvas->at(m_item->mapToScene(pos)); }
    QPoint global(const QPoint& pos) const { return viewport()->mapToGlobal(inView(pos)); }
    void click(const QPoint& pos, Qt::KeyboardModifiers modifiers) const
    {
        QTest::mouseClick(viewport(), Qt::LeftButton, modifiers, inView(pos));
    }

    std::unique_ptr<Canvas> m_canvas;
    DashboardItem* m_item = nullptr;
    TrendPlotWidget* m_plot = nullptr;
};

QTEST_MAIN(TestTrendPlotMouse)
#include "tst_trendplotmouse.moc"
