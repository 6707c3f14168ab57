#include "app/ModeSwitch.h"

#include "app/RecordingController.h"
#include "app/ValueRouter.h"
#include "canvas/CanvasPlots.h"
#include "canvas/DesignScene.h"
#include "definitions/ActiveDefinitions.h"
#include "playback/PlaybackController.h"
#include "playback/recording/SignalPlaybackEngine.h"

#include <QDebug>

#include <algorithm>
#include <iterator>
#include <utility>

/// What belongs to one mode; null where there is nothing to do. Entering may refuse.
struct ModeSwitch::Row
{
    Mode mode;
    const char* status;
    bool showsLiveValues;
    PlaybackController::Mode playback;
    void (ModeSwitch::*leave)();
    bool (ModeSwitch::*enter)();
};

ModeSwitch::ModeSwitch(const Parts& parts, QObject* parent)
    : QObject(parent)
    , m_parts(parts)
{}

const ModeSwitch::Row& ModeSwitch::rowOf(Mode mode)
{
    using Self = ModeSwitch;
    using enum PlaybackController::Mode;
    static constexpr Row kRows[] = {
        {Design, QT_TR_NOOP("Design Mode"), true, Live, &Self::exitDesignMode, &Self::enterDesignMode},
        {Record, QT_TR_NOOP("Recording..."), true, Recording, &Self::exitRecordMode, &Self::enterRecordMode},
        {Play, QT_TR_NOOP("Playing..."), false, Playing, &Self::exitPlayMode, &Self::enterPlayMode},
        {Pause, QT_TR_NOOP("Pause..."), false, Paused, nullptr, nullptr},
        {Idle, QT_TR_NOOP("Idle"), true, Live, nullptr, &Self::enterIdleMode},
    };
    static_assert(std::size(kRows) == Idle + 1);
    static_assert(std::ranges::all_of(kRows, [](const Row& row) { return &row - kRows == row.mode; }));
    return kRows[mode];
}

void ModeSwitch::setMode(Mode mode)
{
    m_parts.engine->cancelLoading(); // a load runs the event loop, from which this may come
    if (m_changing) {
        m_next = mode;
        return;
    }
    m_changing = true;
    Q_EMIT changingChanged(true);
    change(mode);
    while (m_next)
        change(*std::exchange(m_next, std::nullopt));
    m_changing = false;
    Q_EMIT changingChanged(false);
}

void ModeSwitch::fallBackToIdle()
{
    if (!m_next)
        setMode(Idle);
}

void ModeSwitch::change(Mode mode)
{
    if (mode == m_mode) {
        updateStatusLabel(mode);
        return;
    }
    if (const auto leave = rowOf(m_mode).leave)
        (this->*leave)();
    if (m_next) // asked for while the old one was left
        mode = *std::exchange(m_next, std::nullopt);
    else if (m_mode == Record && mode == Play && m_parts.engine->wasLoadCancelled())
        mode = Idle;
    // A mode that refuses leaves only the old one's number: what it ended stays ended.
    const auto enter = rowOf(mode).enter;
    if (!enter || (this->*enter)())
        m_mode = mode;
    m_parts.router->setLive(rowOf(m_mode).showsLiveValues);
    m_parts.playback->setMode(rowOf(m_mode).playback);
    updateStatusLabel(m_mode);
    Q_EMIT modeSettled();
}

void ModeSwitch::updateStatusLabel(Mode mode) { Q_EMIT statusChanged(tr(rowOf(mode).status)); }

bool ModeSwitch::enterDesignMode()
{
    qDebug("Design mode started");
    m_parts.scene->setDesignMode(true);
    Q_EMIT designingChanged(true);
    m_parts.definitions->discardRecording();
    return true;
}

void ModeSwitch::exitDesignMode()
{
    qDebug("Design mode ended");
    Q_EMIT designingChanged(false);
    m_parts.scene->setDesignMode(false);
    CanvasPlots::setExternalTimeEnabled(*m_parts.scene, false);
}

bool ModeSwitch::enterRecordMode()
{
    m_parts.playback->enterRecord();
    if (m_parts.recordingController->isRecording() || !m_parts.recordingController->start())
        return false;
    qDebug("Record mode started");
    CanvasPlots::setExternalTimeEnabled(*m_parts.scene, false);
    m_parts.router->clearErrorConsoles();
    return true;
}

void ModeSwitch::exitRecordMode()
{
    m_parts.recordingController->stop(true);
    qDebug("Record mode ended");
}

// The mode becomes Play also without a recording, after the box that says so.
bool ModeSwitch::enterPlayMode()
{
    qDebug("Play mode started");
    m_parts.playback->enterPlay();
    return true;
}

void ModeSwitch::exitPlayMode()
{
    qDebug("Play mode ended");
    m_parts.playback->leavePlay();
}

bool ModeSwitch::enterIdleMode()
{
    qDebug("Idle mode started");
    m_parts.playback->enterIdle();
    CanvasPlots::clear(*m_parts.scene);
    return true;
}
