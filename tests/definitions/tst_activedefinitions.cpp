#include "definitions/ActiveDefinitions.h"

#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

// Which catalogue is active, and that the one before is still there while its holders are told.
class ActiveDefinitionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsHoldersWhatIsActiveBeforeTheOldCatalogueDies()
    {
        // Long enough to live on the heap, so that a sanitizer sees it read from a dead catalogue.
        const auto named = [](char16_t c) { return std::make_unique<DashboardSignalParser>(QString(40, c)); };
        const auto nameOf = [](auto* catalogue) { return catalogue ? catalogue->path().first(1) : u"-"_s; };
        auto definitions = std::make_unique<ActiveDefinitions>();
        const DashboardSignalParser* before = nullptr;
        const DashboardSignalParser* held = nullptr;
        QStringList told; // the catalogue from before, the active one, the global one
        connect(definitions.get(), &ActiveDefinitions::changed, this, [&] {
            before = std::exchange(held, definitions->active());
            told += nameOf(before) + nameOf(held) + nameOf(gSignalParser);
        });
        connect(definitions.get(), &ActiveDefinitions::projectChanged, this,
                [&] { told += u"project after "_s + nameOf(before); });

        definitions->setProject(named(u'a'));
        definitions->setRecording(named(u'b'));
        definitions->setRecording(named(u'c'));
        definitions->discardRecording();
        definitions->setProject(named(u'd'));
        definitions->setRecording(named(u'e'));
        definitions->setProject(named(u'f')); // drops the recording's catalogue
        definitions->setProject(nullptr);
        definitions->setRecording(nullptr);
        definitions->discardRecording();
        QCOMPARE(told.join(u' '),
                 u"-aa project after - aba bca caa add project after a ded eff project after e"_s);
        definitions.reset();
        QVERIFY(!gSignalParser);
    }
};

QTEST_GUILESS_MAIN(ActiveDefinitionsTest)
#include "tst_activedefinitions.moc"
