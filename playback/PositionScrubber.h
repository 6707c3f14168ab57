#pragma once

#include <QList>
#include <QObject>
#include <QTimer>

class DesignScene;
class QLabel;
class QSlider;
class SignalPlaybackEngine;
class TrendPlotWidget;

// The slider that shows and sets the position in the recording, with its time label. A scrub stops the replay
// and jumps where the handle is, now and then while it is dragged and once at its end; the trend plots take
// their time from it. PlaybackController owns it and decides whether the replay goes on after it.
class PositionScrubber : public QObject
{
    Q_OBJECT

public:
    /// The slider's range is 0 to SignalPlaybackEngine::kPositionSteps; nothing is owned.
    PositionScrubber(SignalPlaybackEngine* engine, const DesignScene* scene, QSlider* slider,
                     QLabel* timeLabel);

    /// Where the slider stands.
    int step() const;
    void setEnabled(bool on);
    bool isScrubbing() const { return m_scrubbing; }
    /// Ends a scrub where the handle is, without released(): a box, a load or another mode takes the mouse.
    void letGo();
    /// Shows the time of the slider's position anew, as after a load.
    void refreshTime();

Q_SIGNALS:
    /// A scrub begins: the replay stands still, and the trend plots are off the clock.
    void started();
    /// The user has ended the scrub. A key, the wheel or a click in the groove is a scrub of its own.
    void released();

private:
    void connectSlider();
    double timeAt(int step) const;
    void showTime(int step);
    void seekTo(int step);
    void onPressed();
    void onReleased();
    void onAction();
    void scrub();
    void finish();
    QList<TrendPlotWidget*> trendPlots() const;

    SignalPlaybackEngine* m_engine;
    const DesignScene* m_scene;
    QSlider* m_slider;
    QLabel* m_timeLabel;

    bool m_scrubbing = false;
    int m_scrubStep = 0; ///< where the handle was last while scrubbing
    QTimer m_scrubTimer;
};
