#include "app/ProjectFolder.h"
#include "definitions/ActiveDefinitions.h"
#include "support/Files.h"
#include "support/ModalAnswer.h"

#include <QDir>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray kDefinitions = "DASHBOARD_SIGNAL(A, \"a\", M)\n";

/// No file can be opened as long as it lives, also not by root.
struct NoMoreFiles
{
    rlimit before{};

    NoMoreFiles()
    {
        ::getrlimit(RLIMIT_NOFILE, &before);
        const int firstFree = ::dup(0);
        ::close(firstFree);
        const rlimit none{rlim_t(firstFree), before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoMoreFiles() { ::setrlimit(RLIMIT_NOFILE, &before); }
};

struct Rig
{
    QTemporaryDir dir;
    QWidget window;
    ActiveDefinitions definitions;
    ProjectFolder project{&definitions, &window};
    QSignalSpy aboutToOpen{&project, &ProjectFolder::aboutToOpen};
    QSignalSpy refused{&project, &ProjectFolder::refused};
    QSignalSpy titles{&project, &ProjectFolder::titleChanged};
    ModalAnswer answer;

    QString makeProject(const QString& name) const
    {
        QString folder = dir.filePath(name);
        QDir().mkpath(folder);
        writeFile(folder + u"/dashboard_signals.def"_s, kDefinitions);
        return folder;
    }
};

QString stored(const char* organization)
{
    return QSettings(QLatin1String(organization), u"Sigvane"_s).value(u"projectDir"_s).toString();
}

} // namespace

class TestProjectFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesAFolderThatIsNoProject()
    {
        Rig rig;
        QVERIFY(!rig.project.open(QString()));
        QVERIFY(!rig.project.open(rig.dir.filePath(u"missing"_s)));
        QVERIFY(!rig.project.open(rig.dir.path()));
        QCOMPARE(rig.aboutToOpen.size(), 0);
        QCOMPARE(rig.project.path(), QString());
    }

    void opensAProject()
    {
        Rig rig;
        QSettings(u"Tavimar"_s, u"Sigvane"_s).clear();
        const QString folder = rig.makeProject(u"good"_s);
        QVERIFY(rig.project.open(QDir::current().relativeFilePath(folder)));
        QCOMPARE(rig.project.path(), folder);
        QCOMPARE(rig.aboutToOpen.size(), 1);
        QCOMPARE(QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
                 QStringList({u"exports"_s, u"layouts"_s, u"recordings"_s}));
        QVERIFY(gSignalParser);
        QCOMPARE(gSignalParser->signalList().size(), 1);
        QCOMPARE(rig.titles.last(), QVariantList{u"Sigvane — "_s + folder});
        QCOMPARE(stored("YourCompany"), folder);
        QCOMPARE(stored("Tavimar"), QString());
    }

    void definitionsThatAreADirectory()
    {
        Rig rig;
        QVERIFY(rig.project.open(rig.makeProject(u"good"_s)));
        const DashboardSignalParser* before = gSignalParser;
        const QString folder = rig.dir.filePath(u"<b>dir</b>"_s);
        const QString path = folder + u"/dashboard_signals.def"_s;
        QDir().mkpath(path);
        rig.answer.press(QMessageBox::Ok);
        const QSignalSpy paths(&rig.project, &ProjectFolder::pathChanged);
        QVERIFY(!rig.project.open(folder));
        QCOMPARE(rig.answer.texts(), QStringList(u"Cannot find signals file:\n"_s + path));
        QCOMPARE(gSignalParser, before);
        QCOMPARE(paths.value(0), QVariantList{folder}); // it is the project all the same
        QCOMPARE(rig.project.definitionsFile(), path);  // which a reload tries again
    }

    void definitionsThatCannotBeRead()
    {
        Rig rig;
        QVERIFY(rig.project.open(rig.makeProject(u"good"_s)));
        const DashboardSignalParser* before = gSignalParser;
        const QString path = writeFile(rig.dir.filePath(u"closed.def"_s), kDefinitions);
        rig.answer.press(QMessageBox::Ok);
        bool loaded = true;
        {
            const NoMoreFiles limit;
            loaded = rig.project.loadDefinitions(path);
        }
        QVERIFY(!loaded);
        QCOMPARE(rig.answer.titles(), QStringList(u"Signals Definition"_s));
        QCOMPARE(rig.answer.texts(), QStringList(u"Failed to load:\n"_s + path));
        QCOMPARE(gSignalParser, before);
    }

    void definitionsFileOpensItsFolder()
    {
        Rig rig;
        const QString folder = rig.makeProject(u"good"_s);
        const QString path = writeFile(folder + u"/other.def"_s, kDefinitions.repeated(2));
        QCOMPARE(rig.project.openWanted({}, path), QStringList());
        QCOMPARE(rig.project.path(), folder);
        QCOMPARE(gSignalParser->signalList().size(), 2);
        QCOMPARE(rig.titles.last(), QVariantList{u"Sigvane — "_s + path});
    }

    void projectCountsMoreThanADefinitionsFile()
    {
        Rig rig;
        const QString folder = rig.makeProject(u"wanted"_s);
        const QString other = rig.makeProject(u"other"_s) + u"/dashboard_signals.def"_s;
        QCOMPARE(rig.project.openWanted(folder, other), QStringList());
        QCOMPARE(rig.project.path(), folder);
        QCOMPARE(rig.project.definitionsFile(), folder + u"/dashboard_signals.def"_s);
    }

    void asksAgainUntilTheFolderIsAProject()
    {
        Rig rig;
        QSettings(u"Tavimar"_s, u"Sigvane"_s).setValue(u"projectDir"_s, rig.makeProject(u"last"_s));
        const QString good = rig.makeProject(u"chosen"_s);
        rig.answer.accept().chooseFile(rig.dir.path()).press(QMessageBox::Ok).accept().chooseFile(good);
        QVERIFY(rig.project.loadLastOrPrompt());
        const QString intro = u"Select a Project"_s;
        const QString picker = u"Select Project Folder (contains dashboard_signals.def)"_s;
        QCOMPARE(rig.answer.titles(), QStringList({intro, picker, u"Invalid Project"_s, intro, picker}));
        QCOMPARE(rig.answer.texts()[2], u"Selected folder does not contain dashboard_signals.def"_s);
        QCOMPARE(rig.project.path(), good);
        QCOMPARE(stored("Tavimar"), good);
        QCOMPARE(rig.refused.size(), 0);
    }

    void rejectedIntroductionGivesUp()
    {
        Rig rig;
        rig.answer.reject();
        QVERIFY(!rig.project.loadLastOrPrompt());
        QCOMPARE(rig.refused.size(), 1);
        QCOMPARE(rig.answer.titles(), QStringList(u"Select a Project"_s));
    }

    void cancelledPickerGivesUp()
    {
        Rig rig;
        rig.answer.accept().reject();
        QVERIFY(!rig.project.loadLastOrPrompt());
        QCOMPARE(rig.refused.size(), 1);
        QCOMPARE(rig.answer.titles().size(), 2); // and not the introduction again
    }
};

QTEST_MAIN(TestProjectFolder)
#include "tst_projectfolder.moc"
