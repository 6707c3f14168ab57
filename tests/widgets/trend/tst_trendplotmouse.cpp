#include "support/Canvas.h"
#include "support/WidgetPicture.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenu>

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
        m_plot->assignSignals({"A"});
        m_plot->setExternalTimeEnabled(true);
        m_plot->setExternalNowMs(10'000);
        m_plot->setValueForSignalAt("A", 1.0, 2.0);
        QVERIFY(QTest::qWaitForWindowExposed(&m_canvas->view));
        m_canvas->view.grab();
    }

    void placesNoMarkerWithoutAlt()
    {
        click(quarter(), Qt::NoModifier);
        QVERIFY(m_plot->markers().isEmpty());
    }

    void placesNoMarkerInDesignMode()
    {
        m_canvas->setDesignMode(true);
        click(quarter(), Qt::AltModifier);
        QVERIFY(m_plot->markers().isEmpty());
    }

    void placesDataMarkerInReplay()
    {
        click(quarter(), Qt::AltModifier);
        const Marker marker = m_plot->markers().value(0);
        QCOMPARE(marker.kind, Marker::Kind::Data);
        QVERIFY(std::abs(marker.tMs - 2500) < 100); // a column is 30 ms wide
    }

    void placesScreenMarkerLive()
    {
        m_plot->setExternalTimeEnabled(false);
        click(quarter(), Qt::AltModifier);
        const Marker marker = m_plot->markers().value(0);
        QCOMPARE(marker.kind, Marker::Kind::Screen);
        QVERIFY(std::abs(marker.xFrac - 0.25) < 0.01);
    }

    void editsLabel()
    {
        click(quarter(), Qt::AltModifier | Qt::ShiftModifier);
        const QPointer<QWidget> editor = awaitedPopup();
        QTest::keyClicks(editor->findChild<QLineEdit*>(), "valve opens");
        QTest::keyClick(editor->findChild<QLineEdit*>(), Qt::Key_Return);
        QTRY_VERIFY(!editor);
        QCOMPARE(m_plot->markers().value(0).label, "valve opens");
    }

    void deletesScreenMarkersByMenu()
    {
        m_plot->loadConfig({{"markers", QJsonArray{QJsonObject{{"kind", "screen"}, {"label", "S"}},
                                                   QJsonObject{{"kind", "data"}, {"label", "D"}}}}});
        QTest::mouseClick(viewport(), Qt::RightButton, Qt::AltModifier, inView(quarter()));
        auto* menu = qobject_cast<QMenu*>(awaitedPopup());
        QAction* action = menu->actions().at(1);
        QCOMPARE(action->text(), "Delete screen markers");
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        QCOMPARE(m_plot->markers().size(), 1);
        QCOMPARE(m_plot->markers().constFirst().label, "D");
    }

    // A pop-up swallows the release of the press that opened it.
    void givesTheMouseBackAfterPopup()
    {
        QTest::mousePress(viewport(), Qt::RightButton, Qt::AltModifier, inView(quarter()));
        awaitedPopup()->close();
        QCOMPARE(m_canvas->scene.mouseGrabberItem(), nullptr);
    }

    void crosshairFollowsHover()
    {
        const QImage before = picture(*m_plot);
        m_canvas->move(m_item->mapToScene(quarter()), Qt::NoButton);
        QVERIFY(picture(*m_plot) != before);
        m_canvas->move(QPointF(5, 5), Qt::NoButton);
        QCOMPARE(picture(*m_plot), before);
    }

private:
    QWidget* viewport() const { return m_canvas->view.viewport(); }
    QPoint inView(const QPoint& pos) const { return m_canvas->at(m_item->mapToScene(pos)); }
    /// A quarter of the window from the left.
    QPoint quarter() const
    {
        const QRect plot = m_plot->plotRect();
        return {plot.left() + plot.width() / 4, plot.center().y()};
    }
    void click(const QPoint& pos, Qt::KeyboardModifiers modifiers) const
    {
        QTest::mouseClick(viewport(), Qt::LeftButton, modifiers, inView(pos));
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
