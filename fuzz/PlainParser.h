#pragma once

#include <QByteArray>
#include <QMap>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

// The grammar of a line once more, written as plainly as can be: what the serial manager says is compared
// with it, and its speed too.

/// Tells the sink (raw, state, error, values, text) what the line says, in the most straightforward way.
template <typename Sink>
void parsePlainly(const QString& line, double defaultTime, Sink& sink)
{
    if (line.isEmpty())
        return;
    static const QRegularExpression kSpaces(QStringLiteral("\\s+"));
    QStringList tokens = line.split(kSpaces, Qt::SkipEmptyParts);
    bool isNumber = false;
    double time = tokens.isEmpty() ? 0.0 : tokens.first().toDouble(&isNumber);
    if (isNumber)
        tokens.removeFirst();
    else
        time = defaultTime;
    sink.raw(time, line);
    QMap<QString, double> values;
    QStringList freeText;
    for (const QString& token : tokens) {
        const qsizetype equalSign = token.indexOf(QLatin1Char('='));
        if (equalSign <= 0) {
            freeText.append(token);
            continue;
        }
        const QString key = token.left(equalSign).trimmed();
        const QString value = token.mid(equalSign + 1).trimmed();
        if (key.startsWith(QLatin1String("ST_"))) {
            if (key.size() > 3 && !value.isEmpty())
                sink.state(time, key.mid(3), value);
        } else if (key == QLatin1String("ERR")) {
            if (!value.isEmpty())
                sink.error(time, value);
        } else {
            const double number = value.toDouble(&isNumber);
            if (isNumber)
                values[key] = number;
        }
    }
    if (!values.isEmpty())
        sink.values(time, values);
    if (!freeText.isEmpty())
        sink.text(time, freeText.join(QLatin1Char(' ')));
}

/// The same for a whole stream of bytes; an unfinished last line says nothing.
template <typename Sink>
void parseStreamPlainly(QByteArray bytes, double defaultTime, Sink& sink)
{
    for (qsizetype lineFeed = bytes.indexOf('\n'); lineFeed >= 0; lineFeed = bytes.indexOf('\n')) {
        QByteArray line = bytes.left(lineFeed);
        bytes.remove(0, lineFeed + 1);
        while (line.endsWith('\r') || line.endsWith('\n'))
            line.chop(1);
        parsePlainly(QString::fromUtf8(line).trimmed(), defaultTime, sink);
    }
}
