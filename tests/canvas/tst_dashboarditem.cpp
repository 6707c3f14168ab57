#include "canvas/StackingOrder.h"
#include "support/Canvas.h"
#include "support/ModalAnswer.h"
#include "widgets/DashboardWidget.h"

#include <QGraphicsProxyWidget>
#include <QMenu>
#include <QPointer>
#include <QScrollBar>
#include <QTextEdit>
#include <QTimer>

// Picks an entry of the menu that the next call pops up; empty closes it again.
class MenuPick : public QObject
{
    Q_OBJECT

public:
    explicit MenuPick(const QString& text)
        : m_text(text)
    {
        connect(&m_timer, &QTimer::timeout, this, &MenuPick::look);
        m_timer.start(5);
    }
    int menus() const { return m_menus; }
    QStringList entries() const { return m_entries; }

private:
    void look()
    {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        m_timer.stop();
        ++m_menus;
        const QList<QAction*> actions = menu->actions();
        for (QAction* action : actions) {
            m_entries.append(action->text());
            if (!m_text.isEmpty() && action->text() == m_text) {
                menu->setActiveAction(action);
                QTest::keyClick(menu, Qt::Key_Return);
                return;
            }
        }
        menu->close();
    }

    QString m_text;
    QTimer m_timer;
    QStringList m_entries;
    int m_menus = 0;
};

class TestDashboardItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resizesOnTheGrid_data()
    {
        QTest::addColumn<QSizeF>("requested");
        QTest::addColumn<QSizeF>("expected");
        const double nan = std::nan("");
        const double inf = std::numeric_limits<double>::infinity();
        QTest::newRow("raised and rounded up") << QSizeF(95, 41) << QSizeF(100, 60);
        QTest::newRow("multiple stays") << QSizeF(200, 100) << QSizeF(200, 100);
        QTest::newRow("fraction is cut") << QSizeF(200.9, 100.2) << QSizeF(200, 100);
        QTest::newRow("nan") << QSizeF(nan, nan) << QSizeF(80, 60);
        QTest::newRow("huge") << QSizeF(1e300, inf) << QSizeF(16000, 16000);
        QTest::newRow("negative") << QSizeF(-1e300, -inf) << QSizeF(80, 60);
    }
    void resizesOnTheGrid()
    {
        QFETCH(QSizeF, requested);
        QFETCH(QSizeF, expected);
        Canvas canvas;
        DashboardItem* item = canvas.add("StateIndicator", QRectF(0, 0, 300, 300));
        item->resize(requested);
        QCOMPARE(item->boundingRect(), QRectF(QPointF(0, 0), expected));
        QCOMPARE(QSizeF(item->widget()->size()), expected);
    }

    void dragsOnTheGrid_data()
    {
        QTest::addColumn<QPointF>("by");
        QTest::addColumn<QPointF>("expected");
        QTest::newRow("half rounds away from zero") << QPointF(14, 15) << QPointF(110, 120);
        QTest::newRow("back") << QPointF(-26, 4) << QPointF(70, 100);
    }
    void dragsOnTheGrid()
    {
        QFETCH(QPointF, by);
        QFETCH(QPointF, expected);
        for (const char* type : {"AnalogGauge", "DigitalDisplay", "MessagesConsole", "StateIndicator"}) {
            Canvas canvas;
            DashboardItem* item = canvas.add(type, QRectF(100, 100, 250, 250));
            canvas.setDesignMode(true);
            canvas.drag({200, 200}, QPointF(200, 200) + by);
            QCOMPARE(item->pos(), expected);
            QVERIFY(!QApplication::overrideCursor());
        }
    }

    void cornerResizes()
    {
        Canvas canvas;
        DashboardItem* item = canvas.add("ErrorConsole", QRectF(100, 100, 250, 200));
        canvas.setDesignMode(true);
        canvas.press({345, 295});
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::SizeFDiagCursor);
        canvas.move({421, 333});
        canvas.release({421, 333});
        QCOMPARE(item->boundingRect().size(), QSizeF(330, 240));
        QCOMPARE(item->pos(), QPointF(100, 100));
    }

    void overrideCursorIsRestoredWhateverEndsTheDrag_data()
    {
        QTest::addColumn<int>("ending");
        QTest::newRow("mode change") << 0;
        QTest::newRow("deletion") << 1;
        QTest::newRow("second press") << 2;
    }
    void overrideCursorIsRestoredWhateverEndsTheDrag()
    {
        QFETCH(int, ending);
        Canvas canvas;
        DashboardItem* item = canvas.add("AnalogGauge", QRectF(100, 100, 250, 250));
        canvas.setDesignMode(true);
        canvas.press({200, 200});
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::ClosedHandCursor);
        if (ending == 0)
            canvas.setDesignMode(false);
        else if (ending == 1)
            item->requestDelete();
        else
            canvas.press({200, 200});
        QTest::mouseRelease(canvas.view.viewport(), Qt::LeftButton, {}, canvas.at({200, 200}));
        QVERIFY(!QApplication::overrideCursor());
    }

    void hoverShowsWhatThePressWouldDo()
    {
        Canvas canvas;
        canvas.add("MessagesConsole", QRectF(100, 100, 250, 250));
        const auto cursorAt = [&canvas](const QPointF& pos) {
            canvas.move(pos, Qt::NoButton);
            QCoreApplication::processEvents();
            return canvas.view.viewport()->cursor().shape();
        };
        QCOMPARE(cursorAt({200, 200}), Qt::IBeamCursor);
        canvas.setDesignMode(true);
        QCOMPARE(cursorAt({201, 200}), Qt::OpenHandCursor);
        QCOMPARE(cursorAt({345, 345}), Qt::SizeFDiagCursor);
        canvas.setDesignMode(false);
        QCOMPARE(cursorAt({202, 200}), Qt::IBeamCursor);
    }

    void widgetGetsTheMouseInRunModesOnly()
    {
        Canvas canvas;
        DashboardItem* item = canvas.add("MessagesConsole", QRectF(100, 100, 250, 150));
        auto* editor = item->widget()->findChild<QTextEdit*>();
        QVERIFY(editor);
        QString text;
        for (int i = 0; i < 100; ++i)
            text += QStringLiteral("line %1\n").arg(i);
        editor->setPlainText(text);
        QCoreApplication::processEvents();
        const QScrollBar* bar = editor->verticalScrollBar();
        QVERIFY(bar->maximum() > 0);

        canvas.setDesignMode(true);
        const int before = bar->value();
        canvas.wheel({200, 150}, -240);
        QCOMPARE(bar->value(), before);
        canvas.drag({120, 120}, {200, 140});
        QVERIFY(!editor->textCursor().hasSelection());
        item->setPos(100, 100);

        canvas.setDesignMode(false);
        canvas.wheel({200, 150}, -240);
        QVERIFY(bar->value() > before);
        canvas.drag({120, 120}, {200, 140});
        QVERIFY(editor->textCursor().hasSelection());
        QCOMPARE(item->pos(), QPointF(100, 100));
    }

    void menuOnlyInDesignMode()
    {
        Canvas canvas;
        canvas.add("AnalogGauge", QRectF(100, 100, 250, 250));
        MenuPick pick{QString()};
        canvas.contextMenu({200, 200});
        QCoreApplication::processEvents();
        QCOMPARE(pick.menus(), 0);
        canvas.setDesignMode(true);
        canvas.contextMenu({200, 200});
        QCOMPARE(pick.entries(),
                 QStringList({QStringLiteral("Configure Widget..."), QStringLiteral("Bring to Front"),
                              QStringLiteral("Send to Back"), QStringLiteral("Bring Forward"),
                              QStringLiteral("Send Backward"), QString(), QStringLiteral("Delete")}));
    }

    void deletesFromItsOwnMenu_data()
    {
        QTest::addColumn<bool>("confirm");
        QTest::newRow("yes") << true;
        QTest::newRow("no") << false;
    }
    void deletesFromItsOwnMenu()
    {
        QFETCH(bool, confirm);
        Canvas canvas;
        const QPointer<DashboardWidget> widget =
            canvas.add("MessagesConsole", QRectF(100, 100, 250, 250))->widget();
        canvas.setDesignMode(true);
        MenuPick pick(QStringLiteral("Delete"));
        ModalAnswer answer;
        answer.press(confirm ? QMessageBox::Yes : QMessageBox::No);
        canvas.contextMenu({200, 200});
        QCOMPARE(answer.titles(), QStringList(QStringLiteral("Delete Widget")));
        QCOMPARE(answer.texts(), QStringList(QStringLiteral("Are you sure you want to delete this widget?")));
        QCOMPARE(canvas.scene.dashboardItems().size(), confirm ? 0 : 1);
        QVERIFY(widget); // not while its own handler runs
        if (confirm)
            QTRY_VERIFY(!widget);
    }

    void deletedByOthersWhileItsMenuIsOpen()
    {
        Canvas canvas;
        DashboardItem* item = canvas.add("DigitalDisplay", QRectF(100, 100, 250, 250));
        const QPointer<DashboardWidget> widget = item->widget();
        canvas.setDesignMode(true);
        QTimer::singleShot(0, &canvas.scene, [item] { item->requestDelete(); });
        MenuPick pick(QStringLiteral("Bring to Front"));
        canvas.contextMenu({200, 200});
        QCOMPARE(pick.menus(), 1);
        QTRY_VERIFY(!widget);
    }

    void configuresItsWidget()
    {
        Canvas canvas;
        DashboardItem* item = canvas.add("DigitalDisplay", QRectF(100, 100, 250, 250));
        canvas.setDesignMode(true);
        MenuPick pick(QStringLiteral("Configure Widget..."));
        ModalAnswer answer;
        answer.accept();
        canvas.contextMenu({200, 200});
        QCOMPARE(answer.titles(), QStringList(QStringLiteral("Configure Widget")));
        QVERIFY(item->widget());
    }

    void restacks_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<int>("index");
        QTest::addColumn<double>("expected");
        QTest::newRow("forward") << QStringLiteral("Bring Forward") << 0 << 1.5;
        QTest::newRow("forward on top") << QStringLiteral("Bring Forward") << 2 << 2.0;
        QTest::newRow("backward") << QStringLiteral("Send Backward") << 2 << 0.5;
        QTest::newRow("backward at the bottom") << QStringLiteral("Send Backward") << 0 << 0.0;
        QTest::newRow("front") << QStringLiteral("Bring to Front") << 0 << 3.0;
        QTest::newRow("back") << QStringLiteral("Send to Back") << 2 << -1.0;
    }
    void restacks()
    {
        QFETCH(QString, entry);
        QFETCH(int, index);
        QFETCH(double, expected);
        Canvas canvas;
        QList<DashboardItem*> items;
        for (int i = 0; i < 3; ++i) {
            items.append(canvas.add("AnalogGauge", QRectF(200 * i, 0, 150, 150)));
            items.last()->setZValue(i);
        }
        canvas.setDesignMode(true);
        MenuPick pick(entry);
        canvas.contextMenu(QPointF(200 * index + 50, 50));
        QCOMPARE(items[index]->zValue(), expected);

        const QList<DashboardItem*> before = canvas.scene.dashboardItems();
        normalizeZOrder(&canvas.scene);
        QCOMPARE(canvas.scene.dashboardItems(), before);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(before[2 - i]->zValue(), double(i));
    }
};

QTEST_MAIN(TestDashboardItem)
#include "tst_dashboarditem.moc"
