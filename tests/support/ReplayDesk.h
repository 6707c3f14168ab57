#pragma once

#include "playback/recording/SignalPlaybackEngine.h"
#include "support/Canvas.h"
#include "support/Files.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QLabel>
#include <QSlider>
#include <QTemporaryDir>

// What a replay is moved and seen with: an engine, a slider with its time, and a canvas with a trend plot of
// the signal A over 4 s.
struct ReplayDesk
{
    const QTemporaryDir dir;
    Canvas canvas;
    TrendPlotWidget* plot = dynamic_cast<TrendPlotWidget*>(canvas.add("TrendPlot", {})->widget());
    QSlider slider{Qt::Horizontal};
    QLabel time;
    SignalPlaybackEngine engine;

    ReplayDesk()
    {
        plot->assignSignals({QStringLiteral("A")});
        plot->loadConfig({{QStringLiteral("timeWindowMs"), 4000}});
        slider.setRange(0, SignalPlaybackEngine::kPositionSteps);
        slider.resize(400, 30);
    }
    QString write(const QString& name, const QByteArray& bytes) const
    {
        return writeFile(dir.filePath(name), bytes);
    }
    /// On the clock, and not on the time of a replay.
    bool plotIsLive() const { return plot->currentNowMs() > 1'000'000'000'000; }
};
