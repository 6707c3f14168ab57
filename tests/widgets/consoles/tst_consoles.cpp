#include "support/WidgetPicture.h"
#include "widgets/consoles/ErrorConsoleWidget.h"
#include "widgets/consoles/MessagesConsoleWidget.h"

#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

// A message console on screen and its parts.
struct Shown
{
    Shown()
    {
        console.loadConfig({{"maxLines", 100}});
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
    void showsEventsAsPlainLines()
    {
        ErrorConsoleWidget console;
        console.appendError(1.0, "E7", "");
        console.appendError(-0.25, "E7", "<b>&amp;</b>");
        QCOMPARE(console.plainText(), u"[1.000s] E7 : E7\n[-0.250s] E7 : <b>&amp;</b>"_s);
        MessagesConsoleWidget messages;
        for (const char16_t code : u"\n\v\r\x1b\x85\u2028\u2029\xfdd0\xfdd1\xfffc"_s.toStdU16String()) {
            messages.appendMessage(1, QChar(code) + u"\tb"_s + QChar(code));
            QVERIFY(messages.plainText().endsWith(u"] \xfffd\tb\xfffd"_s));
        }
        messages.appendMessage(1, QString(999, 'x') + u"😀"_s + QString(1'000'000, 'y'));
        QVERIFY(messages.plainText().endsWith("] " + QString(999, 'x') + QChar(0x2026)));
    }

    void keepsNewestLines()
    {
        MessagesConsoleWidget console;
        console.loadConfig({{"maxLines", 3}});
        for (int i = 1; i <= 60; ++i) {
            console.appendMessage(i, "m");
            if (i % 7 == 0)
                console.plainText(); // some lines leave the document, some before they get there
        }
        console.loadConfig({{"maxLines", -1}}); // counts from the next line on
        QCOMPARE(console.plainText(), u"[58.000s] m\n[59.000s] m\n[60.000s] m"_s);
        console.appendMessage(61, "m");
        QCOMPARE(console.plainText(), u"[61.000s] m"_s);
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
    }

    void holdsViewOrFollowsNewest()
    {
        Shown shown;
        shown.console.loadConfig({{"autoScroll", false}});
        shown.vertical->setValue(shown.vertical->maximum() / 2);
        const QImage before = picture(*shown.viewport);
        shown.append(7); // seven leave at the top
        QCOMPARE(picture(*shown.viewport), before);
        shown.console.loadConfig({{"autoScroll", true}});
        shown.append(1, QString(500, 'x'));
        QVERIFY(shown.isAtEnd());
        QCOMPARE(shown.editor->horizontalScrollBar()->value(), 0);
        shown.console.resize(300, 110);
        QWheelEvent wheel({50, 50}, {50, 50}, {}, {0, 240}, {}, Qt::ControlModifier, {}, false);
        QCoreApplication::sendEvent(shown.viewport, &wheel); // neither scrolls nor zooms
        QVERIFY(shown.isAtEnd());
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
        QTest::mouseDClick(shown.viewport, Qt::LeftButton, {}, QPoint(1, 4));
        shown.vertical->setValue(0);
        shown.append(1);
        QVERIFY(!shown.isAtEnd());
        QFocusEvent out(QEvent::FocusOut); // and the release goes elsewhere
        QCoreApplication::sendEvent(shown.editor, &out);
        shown.append(1);
        QVERIFY(shown.isAtEnd());
    }
};

QTEST_MAIN(TestConsoles)
#include "tst_consoles.moc"
