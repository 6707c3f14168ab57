#include "serial/line/LineBuffer.h"

#include <QBuffer>
#include <QTest>

class TestLineBuffer : public QObject
{
    Q_OBJECT

    static QByteArrayList linesOf(LineBuffer& buffer)
    {
        QByteArrayList lines;
        for (QByteArrayView line; buffer.takeLine(line);)
            lines.append(line.toByteArray());
        return lines;
    }

private Q_SLOTS:
    void joinsWhatIsCutBetweenReads()
    {
        LineBuffer buffer;
        buffer.append("a\nb");
        QCOMPARE(linesOf(buffer), QByteArrayList{"a"});
        buffer.append("c\n\nd");
        QCOMPARE(linesOf(buffer), QByteArrayList({"bc", ""}));
        QCOMPARE(buffer.rest().toByteArray(), "d");
    }

    void failedReadAddsNothing()
    {
        LineBuffer buffer;
        buffer.append("a");
        QBuffer closed;
        QCOMPARE(buffer.readFrom(closed, 100), -1);
        QCOMPARE(buffer.rest().toByteArray(), "a");
    }
};

QTEST_GUILESS_MAIN(TestLineBuffer)
#include "tst_linebuffer.moc"
