#pragma once

#include <QMap>
#include <QObject>
#include <QString>

class DesignScene;
class SerialManager;
class SignalPlaybackEngine;
class SignalRecorder;
class ValueRouter;

// Connects what speaks (the serial port, a replay) to what listens (the router, the recorder, the plots), in
// the order in which they must hear it. It owns none of them and decides nothing.
class EventRouter : public QObject
{
    Q_OBJECT

public:
    EventRouter(ValueRouter* router, const DesignScene* scene, QObject* parent);

    void connectSerial(SerialManager* serial, SignalRecorder* recorder);
    void connectReplay(SignalPlaybackEngine* engine);

Q_SIGNALS:
    void playbackFinished();

private:
    void onPlaybackValuesAt(double t, const QMap<QString, double>& values);
    void onPlaybackStateEvent(double t, const QString& group, const QString& state);
    void onPlaybackErrorEvent(double t, const QString& id);
    void onPlaybackErrorReset();
    void onPlaybackMessageEvent(double t, const QString& text);
    void onPlaybackMessageReset();

    ValueRouter* m_router;
    const DesignScene* m_scene;
    const SignalPlaybackEngine* m_engine = nullptr;
};
