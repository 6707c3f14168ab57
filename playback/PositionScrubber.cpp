#include "playback/PositionScrubber.h"

#include "canvas/CanvasPlots.h"
#include "canvas/DesignScene.h"
#include "definitions/numbers/FileNumbers.h"
#include "playback/recording/SignalPlaybackEngine.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QLabel>
#include <QSlider>

#include <algorithm>

namespace {

constexpr int kScrubIntervalMs = 100;
constexpr double kShortestLookBack = 0.1; // seconds

// Beyond this a time in full would be wider than the toolbar.
constexpr double kLargestPlainTime = 1e12;

QString timeText(double seconds)
{
    const bool plain = seconds < kLargestPlainTime;
    return QString::number(seconds, plain ? 'f' : 'g', plain ? 3 : 6);
}

} // namespace

PositionScrubber::PositionScrubber(SignalPlaybackEngine* engine, const DesignScene* scene, QSlider* slider,
                                   QLabel* timeLabel)
    : m_engine(engine)
    , m_scene(scene)
    , m_slider(slider)
    , m_timeLabel(timeLabel)
{
    connectSlider();
    m_scrubTimer.setSingleShot(true); // anew after each jump, which may take its time
    m_scrubTimer.setTimerType(Qt::PreciseTimer);
    m_scrubTimer.setInterval(kScrubIntervalMs);
    connect(&m_scrubTimer, &QTimer::timeout, this, &PositionScrubber::scrub);
}

void PositionScrubber::connectSlider()
{
    connect(m_engine, &SignalPlaybackEngine::positionChanged, m_slider, &QSlider::setValue);
    connect(m_slider, &QSlider::sliderPressed, this, &PositionScrubber::onPressed);
    connect(m_slider, &QSlider::sliderMoved, this, [this](int step) { m_scrubStep = step; });
    connect(m_slider, &QSlider::actionTriggered, this, &PositionScrubber::onAction);
    connect(m_slider, &QSlider::sliderReleased, this, &PositionScrubber::onReleased);
    connect(m_slider, &QSlider::valueChanged, this, &PositionScrubber::showTime);
}

int PositionScrubber::step() const { return m_slider->value(); }

void PositionScrubber::setEnabled(bool on) { m_slider->setEnabled(on); }

// --- The time ----------------------------------------------------------------------------------------------

double PositionScrubber::timeAt(int step) const
{
    // The largest time may be infinite, which times 0 is no number.
    return step <= 0 ? 0.0 : m_engine->getMaxTimestamp() * step / SignalPlaybackEngine::kPositionSteps;
}

void PositionScrubber::showTime(int step) { m_timeLabel->setText(timeText(timeAt(step))); }

void PositionScrubber::refreshTime() { showTime(m_slider->value()); }

// --- Scrubbing ---------------------------------------------------------------------------------------------

void PositionScrubber::onPressed()
{
    m_engine->stopPlayback();
    m_scrubbing = true;
    m_scrubStep = m_slider->value();
    const QList<TrendPlotWidget*> plots = trendPlots();
    for (TrendPlotWidget* plot : plots) {
        plot->beginBulkLoad();
        plot->setExternalTimeEnabled(true);
    }
    m_scrubTimer.start();
    Q_EMIT started();
}

void PositionScrubber::scrub()
{
    seekTo(m_scrubStep);
    if (m_scrubbing)
        m_scrubTimer.start();
}

void PositionScrubber::onReleased()
{
    if (!m_scrubbing) // letGo() has ended it
        return;
    finish();
    Q_EMIT released();
}

void PositionScrubber::letGo()
{
    if (!m_scrubbing)
        return;
    finish();
    m_slider->setSliderDown(false);
}

// Keys, the wheel and a click in the groove come without press and release. The slider's position is the new
// one here, its value still the old one.
void PositionScrubber::onAction()
{
    const int step = m_slider->sliderPosition();
    const bool onItsOwn = !m_scrubbing;
    if (onItsOwn)
        onPressed();
    m_scrubStep = step;
    if (onItsOwn)
        onReleased();
}

void PositionScrubber::finish()
{
    m_scrubbing = false;
    m_scrubTimer.stop();
    seekTo(m_scrubStep);
    const QList<TrendPlotWidget*> plots = trendPlots();
    for (TrendPlotWidget* plot : plots)
        plot->endBulkLoad();
}

void PositionScrubber::seekTo(int step)
{
    m_engine->setHistoryWindow(
        std::max(kShortestLookBack, CanvasPlots::dominantTrendWindowSeconds(*m_scene)));
    const double t = timeAt(step);
    m_engine->seekToTimestamp(t);
    const qint64 nowMs = wholeMs(t * 1000.0);
    const QList<TrendPlotWidget*> plots = trendPlots();
    for (TrendPlotWidget* plot : plots) {
        plot->setExternalTimeEnabled(true);
        plot->setExternalNowMs(nowMs);
        plot->trimToWindowEndingAt(nowMs);
    }
}

QList<TrendPlotWidget*> PositionScrubber::trendPlots() const
{
    return m_scene->widgetsOfType<TrendPlotWidget>(false);
}
