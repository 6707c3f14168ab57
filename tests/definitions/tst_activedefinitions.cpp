#include "definitions/ActiveDefinitions.h"
#include "support/Catalogue.h"

#include <QTest>

using namespace Qt::StringLiterals;

// Which catalogue is the active one, and which is the project's.
class ActiveDefinitionsTest : public QObject
{
    Q_OBJECT

    struct Replay
    {
        ActiveDefinitions definitions;

        Replay()
        {
            definitions.setProject(declaring("project's"));
            definitions.setRecording(declaring("recording's"));
        }
        QString active() const { return definitions.active()->displayName(u"SIG"_s); }
        static QString project() { return gSignalParser->displayName(u"SIG"_s); }
        static std::unique_ptr<DashboardSignalParser> declaring(const QByteArray& name)
        {
            return catalogueOf("DASHBOARD_SIGNAL(SIG, \"" + name + "\", NONE)");
        }
    };

private Q_SLOTS:
    void recordingsOwnIsActiveAndTheProjectsStays()
    {
        const Replay rig;
        QCOMPARE(rig.active(), u"recording's"_s);
        QCOMPARE(rig.project(), u"project's"_s);
    }

    void discardingGoesBackToTheProjects()
    {
        Replay rig;
        rig.definitions.discardRecording();
        QCOMPARE(rig.active(), u"project's"_s);
    }

    void newProjectEndsTheRecordingsOwn()
    {
        Replay rig;
        rig.definitions.setProject(Replay::declaring("new project's"));
        QCOMPARE(rig.active(), u"new project's"_s);
        QCOMPARE(rig.project(), u"new project's"_s);
    }
};

QTEST_GUILESS_MAIN(ActiveDefinitionsTest)
#include "tst_activedefinitions.moc"
