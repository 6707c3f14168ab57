#include "definitions/ActiveDefinitions.h"
#include "support/Catalogue.h"

#include <QTest>

using namespace Qt::StringLiterals;

// Which catalogue is the active one, and which is the project's.
class ActiveDefinitionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordingsOwnIsActiveAndTheProjectsStays()
    {
        ActiveDefinitions definitions;
        definitions.setProject(catalogueOf("DASHBOARD_SIGNAL(SIG, \"project's\", NONE)"));
        definitions.setRecording(catalogueOf("DASHBOARD_SIGNAL(SIG, \"recording's\", NONE)"));
        QCOMPARE(definitions.active()->displayName(u"SIG"_s), u"recording's"_s);
        QCOMPARE(gSignalParser->displayName(u"SIG"_s), u"project's"_s);
    }
};

QTEST_GUILESS_MAIN(ActiveDefinitionsTest)
#include "tst_activedefinitions.moc"
