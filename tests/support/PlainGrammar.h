#pragma once

#include <QByteArray>
#include <QMap>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <optional>

// The grammar of a line once more, written as plainly as can be and kept apart from the program: what the
// program makes of a line is compared with it, and the speed too.

/// A line's own time, if it begins with one, and the words after that.
struct PlainLine
{
    std::optional<double> time;
    QStringList words;
};

inline PlainLine splitPlainly(const QString& line)
{
    static const QRegularExpression kSpaces(QStringLiteral("\\s+"));
    PlainLine result{{}, line.split(kSpaces, Qt::SkipEmptyParts)};
    bool isNumber = false;
    const double time = result.words.isEmpty() ? 0.0 : result.words.first().toDouble(&isNumber);
    if (isNumber) {
        result.time = time;
        result.words.removeFirst();
    }
    return result;
}

/// Tells the sink (state, error, value, text), word by word, what each says.
template <typename Sink>
void readWordsPlainly(const QStringList& words, Sink& sink)
{
    for (const QString& word : words) {
        const qsizetype equalSign = word.indexOf(QLatin1Char('='));
        if (equalSign <= 0) {
            sink.text(word);
            continue;
        }
        const QString key = word.left(equalSign).trimmed();
        const QString value = word.mid(equalSign + 1).trimmed();
        if (key.startsWith(QLatin1String("ST_"))) {
            if (key.size() > 3 && !value.isEmpty())
                sink.state(key.mid(3), value);
        } else if (key == QLatin1String("ERR")) {
            if (!value.isEmpty())
                sink.error(value);
        } else {
            bool isNumber = false;
            const double number = value.toDouble(&isNumber);
            if (isNumber)
                sink.value(key, number);
        }
    }
}

/// Tells the sink (raw, state, error, values, text) what a line from the port says, each with its time.
template <typename Sink>
void parsePlainly(const QString& line, double defaultTime, Sink& sink)
{
    if (line.isEmpty())
        return;
    const PlainLine parts = splitPlainly(line);
    struct Words
    {
        Sink& sink;
        double time;
        QMap<QString, double> values;
        QStringList freeText;

        void state(const QString& group, const QString& name) { sink.state(time, group, name); }
        void error(const QString& id) { sink.error(time, id); }
        void value(const QString& key, double number) { values[key] = number; }
        void text(const QString& word) { freeText.append(word); }
    } words{sink, parts.time.value_or(defaultTime), {}, {}};
    sink.raw(words.time, line);
    readWordsPlainly(parts.words, words);
    if (!words.values.isEmpty())
        sink.values(words.time, words.values);
    if (!words.freeText.isEmpty())
        sink.text(words.time, words.freeText.join(QLatin1Char(' ')));
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
