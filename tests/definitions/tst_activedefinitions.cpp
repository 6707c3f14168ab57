#include "definitions/ActiveDefinitions.h"

#include <QSignalSpy>
#include <QTest>

namespace {

std::unique_ptr<DashboardSignalParser> catalogue()
{
    return std::make_unique<DashboardSignalParser>(QString());
}

} // namespace

// Which catalogue is active, and that the one before is still there while its holders are told.
class ActiveDefinitionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void activatesTheRecordingsCatalogueWhileItHasOne();
    void keepsTheOldCatalogueUntilHoldersWereTold();
    void leavesNoDanglingGlobal();
};

void ActiveDefinitionsTest::activatesTheRecordingsCatalogueWhileItHasOne()
{
    ActiveDefinitions definitions;
    QSignalSpy changed(&definitions, &ActiveDefinitions::changed);
    QVERIFY(!definitions.active());
    QVERIFY(!gSignalParser);

    definitions.setProject(catalogue());
    const DashboardSignalParser* project = gSignalParser;
    QVERIFY(project);
    QCOMPARE(definitions.active(), project);

    definitions.setRecording(catalogue());
    QVERIFY(definitions.active() != project);
    QCOMPARE(gSignalParser, project);
    definitions.discardRecording();
    QCOMPARE(definitions.active(), project);
    QCOMPARE(changed.size(), 3);

    definitions.setProject(nullptr);
    definitions.setRecording(nullptr);
    definitions.discardRecording();
    QCOMPARE(definitions.active(), project);
    QCOMPARE(changed.size(), 3);

    definitions.setRecording(catalogue());
    definitions.setProject(catalogue()); // a new project drops the recording's catalogue
    QCOMPARE(definitions.active(), gSignalParser);
}

void ActiveDefinitionsTest::keepsTheOldCatalogueUntilHoldersWereTold()
{
    ActiveDefinitions definitions;
    const DashboardSignalParser* held = nullptr;
    QStringList oldPaths; // read through the pointer held from before: a sanitizer sees a dead catalogue
    connect(&definitions, &ActiveDefinitions::changed, this, [&] {
        if (held)
            oldPaths.append(held->path());
        held = definitions.active();
    });
    const auto named = [](char name) {
        return std::make_unique<DashboardSignalParser>(QString(40, QLatin1Char(name)));
    };
    definitions.setProject(named('a'));
    definitions.setRecording(named('b'));
    definitions.setRecording(named('c'));
    definitions.discardRecording();
    definitions.setProject(named('d'));
    definitions.setRecording(named('e'));
    definitions.setProject(named('f'));
    QString first;
    for (const QString& path : oldPaths)
        first += path.at(0);
    QCOMPARE(first, QStringLiteral("abcade"));
}

void ActiveDefinitionsTest::leavesNoDanglingGlobal()
{
    {
        ActiveDefinitions definitions;
        definitions.setProject(catalogue());
    }
    QVERIFY(!gSignalParser);
}

QTEST_GUILESS_MAIN(ActiveDefinitionsTest)
#include "tst_activedefinitions.moc"
