#pragma once

#include "serial/SerialManager.h"

#include <QMap>
#include <QStringList>

// What a line makes the serial manager say, as one text per event, so that sequences of events can be
// compared and read in a failure message.
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
