#pragma once

#include "serial/SerialManager.h"

#include <QMap>
#include <QRegularExpression>
#include <QStringList>

// What a line makes the serial manager say, as one text per event, so that sequences of events can be
// compared and read in a failure message; and a second, plain implementation of the grammar to compare with.
class LineEvents
{
public:
    const QStringList& texts() const { return m_texts; }
    void clear() { m_texts.clear(); }

    void raw(double time, const QString& line) { add("raw", time, line); }
    void state(double time, const QString& group, const QString& name)
    {
        add("state", time, group + QLatin1String(" -> ") + name);
    }
    void error(double time, const QString& id) { add("error", time, id); }
    void text(double time, const QString& text) { add("text", time, text); }
    void values(double time, const QMap<QString, double>& values)
    {
        QString pairs;
        for (auto it = values.cbegin(); it != values.cend(); ++it)
            pairs += QLatin1Char('[') + it.key() + QLatin1Char('=') + exact(it.value()) + QLatin1Char(']');
        add("values", time, pairs);
    }

    /// Writes down what the manager says, as long as the listener lives.
    void listenTo(SerialManager& manager, const QObject* listener)
    {
        const auto on = [&](auto signal, auto slot) {
            QObject::connect(&manager, signal, listener,
                             [this, slot](auto... what) { (this->*slot)(what...); });
        };
        on(&SerialManager::rawLineReceived, &LineEvents::raw);
        on(&SerialManager::stateParsed, &LineEvents::state);
        on(&SerialManager::errorParsed, &LineEvents::error);
        on(&SerialManager::lineParsed, &LineEvents::values);
        on(&SerialManager::unrecognizedParsed, &LineEvents::text);
    }

private:
    static QString exact(double number) { return QString::number(number, 'g', 17); }
    void add(const char* kind, double time, const QString& what)
    {
        m_texts.append(QLatin1String(kind) + QLatin1Char(' ') + exact(time) + QLatin1String(": ") + what);
    }

    QStringList m_texts;
};

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
