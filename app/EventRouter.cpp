#include "app/EventRouter.h"

#include "app/ValueRouter.h"
#include "canvas/CanvasPlots.h"
#include "playback/recording/SignalPlaybackEngine.h"
#include "playback/recording/SignalRecorder.h"
#include "serial/SerialManager.h"

EventRouter::EventRouter(ValueRouter* router, const DesignScene* scene, QObject* parent)
    : QObject(parent)
    , m_router(router)
    , m_scene(scene)
{}

// States, errors and messages of a device are shown in a replay too; only its values keep out of it. Router
// and recorder share a connection each, as a device may flood.
void EventRouter::connectSerial(SerialManager* serial, SignalRecorder* recorder)
{
    connect(serial, &SerialManager::lineParsed, this,
            [this, recorder](double t, const QMap<QString, double>& values) {
                m_router->routeLiveValues(values);
                recorder->writeValues(t, values);
            });
    connect(serial, &SerialManager::stateParsed, this,
            [this, recorder](double t, const QString& group, const QString& state) {
                m_router->routeState(group, state);
                recorder->writeState(t, group, state);
            });
    connect(serial, &SerialManager::errorParsed, this, [this, recorder](double t, const QString& id) {
        recorder->writeError(t, id);
        m_router->routeError(t, id);
    });
    connect(serial, &SerialManager::unrecognizedParsed, this,
            [this, recorder](double t, const QString& text) {
                m_router->routeMessage(t, text);
                recorder->writeMessage(t, text);
            });
}

void EventRouter::connectReplay(SignalPlaybackEngine* engine)
{
    using Engine = SignalPlaybackEngine;
    m_engine = engine;
    connect(engine, &Engine::signalValuesUpdated, this,
            [this](const QMap<QString, double>& values) { m_router->routeLiveValues(values); });
    connect(engine, &Engine::signalValuesUpdatedAt, this, &EventRouter::onPlaybackValuesAt);
    connect(engine, &Engine::stateEvent, this, &EventRouter::onPlaybackStateEvent, Qt::UniqueConnection);
    connect(engine, &Engine::errorEvent, this, &EventRouter::onPlaybackErrorEvent, Qt::UniqueConnection);
    connect(engine, &Engine::errorReset, this, &EventRouter::onPlaybackErrorReset, Qt::UniqueConnection);
    connect(engine, &Engine::messageEvent, this, &EventRouter::onPlaybackMessageEvent, Qt::UniqueConnection);
    connect(engine, &Engine::messageReset, this, &EventRouter::onPlaybackMessageReset, Qt::UniqueConnection);
    connect(engine, &Engine::playbackFinished, this, &EventRouter::playbackFinished);
    connect(engine, &Engine::dataReset, this, [this] { CanvasPlots::reset(*m_scene); });
    // The second time on purpose: onPlaybackValuesAt() has put the trend plots on the replay's time by now.
    // In a replay that starts from Idle they would else be given first points stamped by the clock.
    connect(
        engine, &Engine::signalValuesUpdatedAt, this,
        [this](double t, const QMap<QString, double>& values) { m_router->routeReplayedValues(t, values); });
}

void EventRouter::onPlaybackValuesAt(double t, const QMap<QString, double>& values)
{
    if (sender() == m_engine)
        m_router->routeReplayedTrends(t, values);
}

void EventRouter::onPlaybackStateEvent(double, const QString& group, const QString& state)
{
    m_router->routeState(group, state);
}

void EventRouter::onPlaybackErrorEvent(double t, const QString& id) { m_router->routeError(t, id); }

void EventRouter::onPlaybackErrorReset() { m_router->clearErrorConsoles(); }

void EventRouter::onPlaybackMessageEvent(double t, const QString& text) { m_router->routeMessage(t, text); }

void EventRouter::onPlaybackMessageReset() { m_router->clearMessageConsoles(); }
