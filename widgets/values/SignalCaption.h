#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// What the single-value widgets write under their value: the two pieces of the first assignment, which may
// read "NAME:description". It knows nothing of the catalogue.
struct SignalCaption
{
    QString name;
    QString description;
};

/// The pieces of the first entry, trimmed; empty where there is none.
inline SignalCaption signalCaption(const QList<QString>& assignedSignals)
{
    const QStringList pieces = assignedSignals.value(0).trimmed().split(QLatin1Char(':'), Qt::SkipEmptyParts);
    return {pieces.value(0).trimmed(), pieces.value(1).trimmed()};
}
