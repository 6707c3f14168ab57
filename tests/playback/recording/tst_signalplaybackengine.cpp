#include "playback/recording/SignalPlaybackEngine.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <fstream>
#include <functional>

using namespace Qt::StringLiterals;

// An engine, all that it said, and what it is told: from inside a signal too, with "on=<said>><action>".
struct Rig : SignalPlaybackEngine
{
    QTemporaryDir folder;
    QString path = folder.filePath(u"a.rec"_s), answerTo, answer;
    QStringList said;
    int files = 0;
    const QHash<QString, std::function<void(QString)>> actions{
        {u"load"_s, [this](auto lines) { write(lines), act(u"again"_s); }},
        {u"again"_s, [this](auto) { said << (loadFromFile(path) ? u"loaded"_s : u"not loaded"_s); }},
        {u"start"_s, [this](auto) { startPlayback(); }},
        {u"stop"_s, [this](auto) { cancelLoading(), stopPlayback(); }},
        {u"ms"_s, [this](auto ms) { advance(ms.toLongLong()); }},
        {u"seek"_s, [this](auto t) { seekToTimestamp(t.toDouble()); }},
        {u"rate"_s, [this](auto rate) { setPlaybackRate(rate.toDouble()); }},
        {u"groups"_s, [this](auto ids) { setKnownStateGroups(ids.split(u'+')); }},
        {u"on"_s, [this](auto s) { answerTo = s.section(u'>', 0, 0), answer = s.section(u'>', 1); }}};

    Rig()
    {
        const auto on = [this](const char* name, auto signal) {
            connect(this, signal, this, [this, name](const auto&... what) {
                QString text;
                (QDebug(&text).noquote() << name << ... << what);
                text = text.remove(u"QMap"_s).trimmed();
                if (text.startsWith("read"_L1) && (text != "read 1"_L1 || said.endsWith(text)))
                    return; // how many slices it takes is the machine's matter
                said << text;
                if (said.last() == answerTo)
                    act(std::exchange(answer, answerTo = QString()));
            });
        };
        on("values", &Rig::signalValuesUpdated), on("at", &Rig::signalValuesUpdatedAt);
        on("state", &Rig::stateEvent), on("error", &Rig::errorEvent), on("no errors", &Rig::errorReset);
        on("message", &Rig::messageEvent), on("no messages", &Rig::messageReset);
        on("no data", &Rig::dataReset), on("read", &Rig::loadProgressed), on("end", &Rig::playbackFinished);
        on("time", &Rig::playbackTimeAdvanced), on("step", &Rig::positionChanged);
    }
    void write(const QString& lines)
    {
        std::ofstream(path.toStdString()) << lines.toStdString();
        QFile file(path); // two files of a moment must not have the same time
        if (file.open(QIODevice::ReadWrite))
            file.setFileTime(QDateTime::fromSecsSinceEpoch(++files), QFileDevice::FileModificationTime);
    }
    void act(const QString& action) { actions[action.section(u'=', 0, 0)](action.section(u'=', 1)); }
};

/// After it has loaded a recording, which comes first and has | for line feeds.
static QString whatItSays(QString actions)
{
    Rig rig;
    for (const QString& action : actions.replace(u'|', u'\n').split(u';'))
        rig.act(action);
    return rig.said.mid(rig.said.indexOf(u"loaded"_s) + 1).join(u';');
}

class SignalPlaybackEngineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void says_data()
    {
        QTest::addColumn<QString>("actions");
        QTest::addColumn<QString>("expected");
        const auto row = [](auto name, auto actions, auto said) { QTest::newRow(name) << actions << said; };
        row("plays in file order, seeks with history",
            u"load=0 A=1|4.5 B=2 ST_M=RUN ERR=7 ST_L=ON|3 RAW hi  you|14.5;groups=G+M;"
            "rate=2;rate=-1;rate=inf;ms=1999;ms=0;ms=2000;ms=1;ms=500;seek=14.5"_s,
            u"values ((A, 1));at 0 ((A, 1));time 3.998;step 275;time 3.998;step 275;time 3.998;step 275;"
            "time 4;step 275;values ((A, 1)(B, 2));at 4.5 ((A, 1)(B, 2));state 4.5 M RUN;"
            "state 4.5 L ON;error 4.5 7;values ((A, 1)(B, 2));at 3 ((A, 1)(B, 2));message 3 hi you;time 5;"
            "step 344;no data;at 4.5 ((A, 1)(B, 2));at 3 ((A, 1)(B, 2));values ((A, 1)(B, 2));state 3 G;"
            "state 3 L ON;state 3 M RUN;no errors;error 4.5 7;no messages;message 3 hi you"_s);
        row("times that are no numbers", u"load=0|nan A=2|inf;ms=50;seek=inf;start;ms=0"_s,
            u"values ();at 0 ();values ((A, 2));at nan ((A, 2));time 0.05;step 0;no data;values ();no errors;"
            "no messages;at nan ((A, 2));time inf;values ((A, 2));at nan ((A, 2));values ((A, 2));"
            "at inf ((A, 2));time inf;step 1000;end"_s);
        row("loads what is new",
            u"load=0;again;load=1;on=read 1>stop;load=0 A=2;ms=1;again;on=read 1>again;"
            "load=0 A=234;on=read 1>ms=1;load=# none;seek=1;ms=1"_s,
            u"loaded;read 1;loaded;read 1;not loaded;end;read 1;loaded;read 1;not loaded;loaded;read 1;not loaded;end"_s);
        row("a listener stops", u"load=0 ST_M=RUN|0;start;on=values ()>stop;ms=1;start"_s,
            u"at 0 ();time 0;values ();at 0 ();state 0 M RUN;time 0.001;step 1000;time 0.001"_s);
        row("a listener seeks", u"load=0 A=1|1 ERR=5;start;on=at 1 ((A, 1))>seek=nan;ms=1000;ms=1"_s,
            u"at 0 ((A, 1));time 0;values ((A, 1));at 0 ((A, 1));values ((A, 1));at 1 ((A, 1));"
            "values ((A, 1));no errors;no messages;values ((A, 1));at 0 ((A, 1));values ((A, 1));"
            "at 1 ((A, 1));error 1 5;time 1.001;step 1000;end"_s);
        row("a listener loads less", u"load=0|0 A=2 ERR=2|1;start;on=at 0 ((A, 2))>load=0 B=1;ms=1;ms=1"_s,
            u"at 0 ();time 0;values ();at 0 ();values ((A, 2));at 0 ((A, 2));read 1;loaded;end"_s);
    }

    void says()
    {
        QFETCH(QString, actions);
        QTEST(whatItSays(actions), "expected");
    }

    void seeksAsIfNothingCameAfterwards()
    {
        QRandomGenerator random(3);
        QStringList lines;
        for (int i = 0; i < 3000; ++i)
            lines << u"%1 K%2=%3 ST_%2=%3 ERR=%3"_s.arg(i - random.bounded(9)).arg(i % 7).arg(i);
        const auto sought = [](const QStringList& file, int t) {
            return whatItSays(u"load=%1;seek=%2"_s.arg(file.join(u'|')).arg(t));
        };
        for (int t = 0; t < 2900; t += 1 + random.bounded(300)) {
            int before = 0;
            while (lines[before].section(u' ', 0, 0).toInt() < t)
                ++before;
            QCOMPARE(sought(lines, t), sought(lines.first(std::max(before, 1)), t));
        }
    }

    void slowsDownWhereListenersTakeTooLong()
    {
        Rig rig;
        rig.act(u"load=0\n1\n2\n3\n4"_s);
        int frames = 0;
        bool aheadOfWhatIsShown = false;
        connect(&rig, &Rig::signalValuesUpdated, this, [&] {
            QElapsedTimer busy;
            for (busy.start(); !busy.hasExpired(45);) {
            }
            ++frames;
        });
        connect(&rig, &Rig::playbackTimeAdvanced, this,
                [&](double t) { aheadOfWhatIsShown |= frames < 5 && t > frames; });
        rig.setPlaybackRate(100);
        rig.startPlayback();
        QTRY_COMPARE(rig.said.last(), u"end"_s);
        QVERIFY(frames == 5 && !aheadOfWhatIsShown);
    }

    void playsByTheClock()
    {
        Rig rig;
        rig.act(u"load=0\n1"_s);
        rig.setPlaybackRate(5);
        QTest::ignoreMessage(QtDebugMsg, "[Playback] frames: 2 maxTimestamp: 1 playbackRate: 5 first dt: 1");
        rig.startPlayback();
        QTRY_COMPARE(rig.said.last(), u"end"_s);
    }
};

QTEST_GUILESS_MAIN(SignalPlaybackEngineTest)
#include "tst_signalplaybackengine.moc"
