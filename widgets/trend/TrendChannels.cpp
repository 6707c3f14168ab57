#include "widgets/trend/TrendChannels.h"

#include "definitions/numbers/SignalName.h"
#include "widgets/trend/TrendStore.h"

#include <array>

QColor TrendChannels::defaultColor(int i)
{
    static const std::array<QColor, 6> colors = {QColor(0, 0, 0),   QColor(200, 0, 0),  QColor(0, 120, 0),
                                                 QColor(0, 0, 180), QColor(150, 75, 0), QColor(128, 0, 128)};
    return colors[std::size_t(i) % colors.size()];
}

void TrendChannels::setAssignment(const QStringList& entries)
{
    m_list.clear();
    QSet<QString> seen;
    for (const QString& entry : entries) {
        const QString key = canonical(entry);
        if (seen.contains(key))
            continue;
        seen.insert(key);
        m_list.append({key, defaultColor(int(m_list.size())), m_hiddenKeys.contains(key)});
    }
}

void TrendChannels::toggle(const QString& key)
{
    if (!m_hiddenKeys.remove(key))
        m_hiddenKeys.insert(key);
    for (Channel& channel : m_list)
        channel.isHidden = m_hiddenKeys.contains(channel.key);
}

QList<TrendChannels::Filled> TrendChannels::filled(const TrendStore& store) const
{
    QList<Filled> filled;
    for (const Channel& channel : m_list) {
        const TrendSeries* series = store.find(channel.key);
        if (series && !series->isEmpty())
            filled.append({channel, series});
    }
    return filled;
}

QList<TrendChannels::Filled> TrendChannels::shown(const TrendStore& store) const
{
    QList<Filled> shown = filled(store);
    shown.removeIf([](const Filled& each) { return each.channel.isHidden; });
    return shown;
}
