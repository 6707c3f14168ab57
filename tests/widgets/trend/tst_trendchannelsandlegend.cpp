#include "widgets/trend/TrendChannels.h"
#include "widgets/trend/TrendLegend.h"

#include <QImage>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;

// TrendChannels and the TrendLegend that lists them.
class TestTrendChannelsAndLegend : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hiddenChannelStaysHiddenWhenReassigned()
    {
        TrendChannels channels;
        channels.setAssignment({"A", "B"});
        channels.toggle("B");
        channels.setAssignment({"A"});
        channels.setAssignment({"A", "B"});
        QCOMPARE(hiddenOf(channels), QStringList{"B"});
    }

    // Two rows need more room than such a low plot has.
    void legendIsHitBelowLowPlotToo()
    {
        QImage image(320, 220, QImage::Format_RGB32);
        QPainter painter(&image);
        TrendLegend legend;
        legend.paint(painter, QRect(10, 100, 300, 20), 220, {{"A", "Pump", Qt::red}, {"B", "Fan", Qt::blue}},
                     Qt::white);
        QCOMPARE(legend.channelAt({30, 130}), u"B"_s);
        QCOMPARE(legend.channelAt({30, 150}), std::nullopt);
    }

private:
    static QStringList hiddenOf(const TrendChannels& channels)
    {
        QStringList keys;
        for (const TrendChannels::Channel& channel : channels.list()) {
            if (channel.isHidden)
                keys.append(channel.key);
        }
        return keys;
    }
};

QTEST_MAIN(TestTrendChannelsAndLegend)
#include "tst_trendchannelsandlegend.moc"
