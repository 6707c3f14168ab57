#include "app/ModeSwitch.h"

#include "app/RecordingController.h"
#include "app/ValueRouter.h"
#include "canvas/CanvasPlots.h"
#include "canvas/DesignScene.h"
#include "definitions/ActiveDefinitions.h"
#include "playback/PlaybackController.h"
#include "playback/recording/SignalPlaybackEngine.h"

#include <QDebug>

#include <iterator>
#include <utility>

namespace {

PlaybackController::Mode playbackMode(ModeSwitch::Mode mode)
{
    using enum PlaybackController::Mode;
    return mode == ModeSwitch::Play     ? Playing
           : mode == ModeSwitch::Pause  ? Paused
           : mode == ModeSwitch::Record ? Recording
                                        : Live;
}

} // namespace

ModeSwitch::ModeSwitch(const Parts& parts, QObject* parent)
    : QObject(parent)
    , m_parts(parts)
{}

const ModeSwitch::Row& ModeSwitch::rowOf(Mode mode)
{
    using Self = ModeSwitch;
    static constexpr Row kRows[] = {
        {QT_TR_NOOP("Design Mode"), &Self::exitDesignMode, &Self::enterDesignMode},
        {QT_TR_NOOP("Recording..."), &Self::exitRecordMode, &Self::enterRecordMode},
        {QT_TR_NOOP("Playing..."), &Self::exitPlayMode, &Self::enterPlayMode},
        {QT_TR_NOOP("Pause..."), nullptr, nullptr},
        {QT_TR_NOOP("Idle"), nullptr, &Self::enterIdleMode},
    };
    static_assert(std::size(kRows) == Idle + 1);
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
    m_parts.router->setLive(m_mode != Play && m_mode != Pause);
    m_parts.playback->setMode(playbackMode(m_mode));
    updateStatusLabel(m_mode);
    Q_EMIT modeChanged(m_mode);
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
    if (!m_parts.recordingController->start())
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
