#include "support/WidgetTools.h"
#include "widgets/DashboardWidgetConfigDialog.h"
#include "widgets/ErrorConsoleWidget.h"
#include "widgets/MessagesConsoleWidget.h"

#include <QCheckBox>
#include <QScrollBar>
#include <QSpinBox>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

// A message console on screen and its parts.
struct Shown
{
    explicit Shown(bool autoScroll = true)
    {
        console.loadConfig({{"maxLines", 100}, {"autoScroll", autoScroll}});
        console.resize(300, 150);
        console.show();
        append(100);
    }
    void append(int count, const QString& text = u"line"_s)
    {
        while (--count >= 0)
            console.appendMessage(++number, text);
        console.plainText();
    }
    bool isAtEnd() const { return vertical->maximum() > 0 && vertical->value() == vertical->maximum(); }

    MessagesConsoleWidget console;
    QTextEdit* editor = console.findChild<QTextEdit*>();
    QWidget* viewport = editor->viewport();
    QScrollBar* vertical = editor->verticalScrollBar();
    int number = 0;
};

class TestConsoles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formatsErrors()
    {
        ErrorConsoleWidget console;
        console.appendError(1.0, "E7", "");
        console.appendError(-0.25, "E7", "<b>&amp;</b><img src=x>");
        QCOMPARE(console.plainText(), u"[1.000s] E7 : E7\n[-0.250s] E7 : <b>&amp;</b><img src=x>"_s);
        console.appendError(0, "E8", "waiting");
        console.clearErrors();
        QCOMPARE(console.plainText(), QString());
    }

    void makesOneBlockPerEvent()
    {
        Shown shown;
        for (const char16_t code : u"\n\v\r\x1b\x85\u2028\u2029\xfdd0\xfdd1\xfffc"_s.toStdU16String()) {
            shown.append(1, QChar(code) + u"\tb"_s + QChar(code));
            QVERIFY(shown.console.plainText().endsWith(u"] \xfffd\tb\xfffd"_s));
        }
        shown.append(1, QString(999, 'x') + u"😀"_s + QString(1'000'000, 'y'));
        QVERIFY(shown.console.plainText().endsWith("] " + QString(999, 'x') + QChar(0x2026)));
    }

    void keepsNewestLines()
    {
        for (const double maxLines : {50.0, 0.0, 1e300}) {
            for (const int flushEvery : {1, 7, 1000}) {
                MessagesConsoleWidget console;
                console.loadConfig({{"maxLines", maxLines}});
                QStringList expected;
                for (int i = 1; i <= 60; ++i) {
                    console.appendMessage(i, "m");
                    expected += u"[%1.000s] m"_s.arg(i);
                    if (i % flushEvery == 0)
                        console.plainText();
                }
                expected = expected.last(maxLines == 0 ? 1 : qsizetype(qMin(60.0, maxLines)));
                console.loadConfig({{"maxLines", 1}}); // counts from the next line on
                QCOMPARE(console.plainText().split('\n'), expected);
                console.appendMessage(61, "m");
                QCOMPARE(console.plainText(), u"[61.000s] m"_s);
            }
        }
    }

    void writesBurstInPortions()
    {
        MessagesConsoleWidget console;
        for (int i = 0; i < 600; ++i)
            console.appendMessage(i, QString(1000, 'x'));
        const QTextDocument* document = console.findChild<QTextEdit*>()->document();
        QCoreApplication::processEvents();
        QVERIFY(document->firstBlock().text().startsWith("[100.") && document->blockCount() < 250);
        QTRY_COMPARE(document->blockCount(), 500);
        QVERIFY(document->lastBlock().text().startsWith("[599.000s] "));
    }

    void holdsViewOrFollowsNewest()
    {
        Shown shown(false);
        shown.vertical->setValue(shown.vertical->maximum() / 2);
        const QImage before = picture(*shown.viewport);
        shown.append(7); // seven leave at the top
        QCOMPARE(picture(*shown.viewport), before);
        shown.console.loadConfig({{"autoScroll", true}});
        shown.append(1, QString(500, 'x'));
        QVERIFY(shown.isAtEnd());
        QCOMPARE(shown.editor->horizontalScrollBar()->value(), 0);
        shown.console.resize(300, 110);
        const QFont font = shown.editor->font();
        QWheelEvent wheel({50, 50}, {50, 50}, {}, {0, 240}, {}, Qt::ControlModifier, {}, false);
        QCoreApplication::sendEvent(shown.viewport, &wheel); // neither scrolls nor zooms
        QVERIFY(shown.isAtEnd() && shown.editor->font() == font);
    }

    void selectsWhileLinesArrive()
    {
        Shown shown;
        const QString marked = shown.editor->cursorForPosition(QPoint(2, 4)).block().text();
        QTest::mousePress(shown.viewport, Qt::LeftButton, {}, QPoint(1, 4));
        shown.append(5);
        QTest::mouseMove(shown.viewport, QPoint(290, 4));
        QTest::mouseRelease(shown.viewport, Qt::LeftButton, {}, QPoint(290, 4));
        shown.append(5);
        QVERIFY(shown.isAtEnd());
        QCOMPARE(shown.editor->textCursor().selectedText(), marked);
        shown.editor->moveCursor(QTextCursor::End);
        shown.editor->moveCursor(QTextCursor::StartOfBlock, QTextCursor::KeepAnchor);
        const QString last = shown.editor->textCursor().selectedText();
        shown.append(1);
        QCOMPARE(shown.editor->textCursor().selectedText(), last); // the end has moved away
    }

    void followsAgainWhenSelectingEndsElsewhere()
    {
        Shown shown;
        QFocusEvent out(QEvent::FocusOut);
        QHideEvent hide;
        for (QEvent* event : std::initializer_list<QEvent*>{&out, &hide}) {
            QTest::mouseDClick(shown.viewport, Qt::LeftButton, {}, QPoint(1, 4));
            shown.vertical->setValue(0);
            shown.append(1);
            QVERIFY(!shown.isAtEnd());
            QCoreApplication::sendEvent(shown.editor, event);
            shown.append(1);
            QVERIFY(shown.isAtEnd());
        }
    }

    void configuresMessagesAtOnce()
    {
        ErrorConsoleWidget errors;
        MessagesConsoleWidget messages;
        for (EventConsoleWidget* console : std::initializer_list<EventConsoleWidget*>{&errors, &messages}) {
            DashboardWidgetConfigDialog dialog(console);
            dialog.findChild<QSpinBox*>()->setValue(80);
            dialog.findChild<QCheckBox*>()->click();
            QCOMPARE(console->maxLines() == 80 && !console->autoScroll(), console == &messages);
            dialog.applyConfig();
            QCOMPARE(console->saveConfig(), (QJsonObject{{"maxLines", 80}, {"autoScroll", false}}));
        }
    }
};

QTEST_MAIN(TestConsoles)
#include "tst_consoles.moc"
