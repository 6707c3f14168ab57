#include "app/ProjectFolder.h"
#include "definitions/ActiveDefinitions.h"
#include "support/ModalAnswer.h"

#include <QDir>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestProjectFolder : public QObject
{
    Q_OBJECT

    struct Rig
    {
        QTemporaryDir dir;
        QWidget window;
        ActiveDefinitions definitions;
        ProjectFolder project{&definitions, &window};
        QSignalSpy aboutToOpen{&project, &ProjectFolder::aboutToOpen};
        ModalAnswer answer;

        QString makeProject(const QString& name) const
        {
            const QString folder = dir.filePath(name);
            QDir().mkpath(folder);
            QFile file(folder + u"/dashboard_signals.def"_s);
            if (!file.open(QIODevice::WriteOnly) || file.write("DASHBOARD_SIGNAL(A, \"a\", M)\n") < 0)
                qFatal("no project");
            return folder;
        }
    };

    static QString stored(const char* organization)
    {
        return QSettings(QLatin1String(organization), u"Sigvane"_s).value(u"projectDir"_s).toString();
    }

private Q_SLOTS:
    void opensAProjectAndNothingElse()
    {
        Rig rig;
        QSettings(u"Tavimar"_s, u"Sigvane"_s).clear();
        for (const QString& dir : {QString(), rig.dir.filePath(u"missing"_s), rig.dir.path()})
            QVERIFY(!rig.project.open(dir));
        QVERIFY(rig.aboutToOpen.isEmpty());
        QCOMPARE(rig.project.path(), QString());
        const QString folder = rig.makeProject(u"good"_s);
        QVERIFY(rig.project.open(QDir::current().relativeFilePath(folder)));
        QCOMPARE(rig.project.path(), folder);
        QCOMPARE(rig.aboutToOpen.size(), 1);
        for (const char* name : {"recordings", "layouts", "exports"})
            QVERIFY(QFileInfo(rig.project.file(QLatin1String(name))).isDir());
        QVERIFY(gSignalParser && gSignalParser->signalList().size() == 1);
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

    void asksAgainUntilTheFolderIsAProjectOrTheUserGivesUp()
    {
        Rig rig;
        QSettings(u"Tavimar"_s, u"Sigvane"_s).setValue(u"projectDir"_s, rig.makeProject(u"last"_s));
        const QString good = rig.makeProject(u"chosen"_s);
        rig.answer.accept().chooseFile(rig.dir.path()).press(QMessageBox::Ok).accept().chooseFile(good);
        rig.project.loadLastOrPrompt();
        QVERIFY(rig.answer.allUsed());
        QCOMPARE(rig.project.path(), good);
        QCOMPARE(stored("Tavimar"), good);

        const QSignalSpy refused(&rig.project, &ProjectFolder::refused);
        rig.answer.reject(); // the introduction
        rig.project.showIntroAndPrompt();
        QCOMPARE(refused.size(), 1);
        QVERIFY(rig.answer.unexpected() == 0);
    }
};

QTEST_MAIN(TestProjectFolder)
#include "tst_projectfolder.moc"
