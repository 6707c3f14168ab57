#pragma once

#include <QColor>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

class TrendSeries;
class TrendStore;

// The channels of a trend plot: one per series that its assignment names, in assigned order. Colours follow
// the place in that order, so that hiding a channel does not change those of the others. A channel that is
// hidden stays so when its signal is taken away and assigned again.
class TrendChannels
{
public:
    struct Channel
    {
        QString key; ///< of its series
        QColor color;
        bool isHidden = false;
    };
    /// A channel with its samples, which are not empty.
    struct Filled
    {
        Channel channel;
        const TrendSeries* series;
    };

    /// The colour of channel i: six colours, again and again. i must not be negative.
    static QColor defaultColor(int i);

    void setAssignment(const QStringList& entries);
    /// Hides a channel that is shown, and the other way round.
    void toggle(const QString& key);

    const QList<Channel>& list() const { return m_list; }
    /// The channels that have samples. Valid until these change.
    QList<Filled> filled(const TrendStore& store) const;
    /// Of those the ones that are not hidden.
    QList<Filled> shown(const TrendStore& store) const;

private:
    QList<Channel> m_list;
    QSet<QString> m_hiddenKeys;
};
