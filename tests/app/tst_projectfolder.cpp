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

    QTemporaryDir m_dir;
    QWidget m_window;

    QString makeProject(const QString& name, const QByteArray& text = "DASHBOARD_SIGNAL(A, \"a\", M)\n")
    {
        const QString folder = m_dir.filePath(name);
        QDir().mkpath(folder);
        QFile file(folder + u"/dashboard_signals.def"_s);
        return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? folder : QString();
    }
    static QString stored(const char* organization)
    {
        return QSettings(QLatin1String(organization), u"Sigvane"_s).value(u"projectDir"_s).toString();
    }

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_dir.isValid());
        QSettings(u"YourCompany"_s, u"Sigvane"_s).clear();
        QSettings(u"Tavimar"_s, u"Sigvane"_s).clear();
    }

    void opensAProject()
    {
        ActiveDefinitions definitions;
        ProjectFolder project(&definitions, &m_window);
        const QString folder = makeProject(u"good"_s);
        const QSignalSpy aboutToOpen(&project, &ProjectFolder::aboutToOpen);
        const QSignalSpy opened(&project, &ProjectFolder::opened);
        QVERIFY(project.open(QDir::current().relativeFilePath(folder)));
        QCOMPARE(project.path(), folder);
        QCOMPARE(aboutToOpen.size(), 1);
        QCOMPARE(opened.size(), 1);
        for (const char* name : {"recordings", "layouts", "exports"})
            QVERIFY(QFileInfo(project.file(QLatin1String(name))).isDir());
        QCOMPARE(gSignalParser, definitions.active());
        QCOMPARE(gSignalParser->signalList().size(), 1);
        QCOMPARE(stored("YourCompany"), folder);
        QCOMPARE(stored("Tavimar"), QString());
    }

    void changesNothingForAFolderThatIsNoProject()
    {
        ActiveDefinitions definitions;
        ProjectFolder project(&definitions, &m_window);
        const QSignalSpy aboutToOpen(&project, &ProjectFolder::aboutToOpen);
        for (const QString& dir : {QString(), m_dir.filePath(u"missing"_s), m_dir.path()})
            QVERIFY(!project.open(dir));
        QVERIFY(aboutToOpen.isEmpty());
        QCOMPARE(project.path(), QString());
        QCOMPARE(gSignalParser, nullptr);
        QCOMPARE(stored("YourCompany"), QString());
        project.ensureSubdirs(); // without a project it makes nothing, nowhere
        QVERIFY(!QFileInfo::exists(u"recordings"_s));
        QVERIFY(!QFileInfo::exists(u"/recordings"_s));
    }

    void definitionsThatAreADirectory()
    {
        ActiveDefinitions definitions;
        ProjectFolder project(&definitions, &m_window);
        const QString good = makeProject(u"good"_s);
        QVERIFY(project.open(good));
        const DashboardSignalParser* before = gSignalParser;
        const QString folder = m_dir.filePath(u"<b>dir</b>"_s);
        const QString path = folder + u"/dashboard_signals.def"_s;
        QDir().mkpath(path);
        QVERIFY(ProjectFolder::isValid(folder));
        ModalAnswer answer;
        answer.press(QMessageBox::Ok);
        QVERIFY(!project.open(folder));
        QCOMPARE(answer.titles(), QStringList(u"Signals Definition"_s));
        QCOMPARE(answer.texts(), QStringList(u"Cannot find signals file:\n"_s + path));
        QCOMPARE(gSignalParser, before);
        QCOMPARE(project.path(), folder); // it is the project all the same
        QCOMPARE(stored("YourCompany"), folder);
    }

    void asksAgainUntilTheFolderIsAProject()
    {
        ActiveDefinitions definitions;
        ProjectFolder project(&definitions, &m_window);
        QSettings(u"Tavimar"_s, u"Sigvane"_s).setValue(u"projectDir"_s, makeProject(u"last"_s));
        const QString good = makeProject(u"chosen"_s);
        const QString bad = m_dir.filePath(u"bad"_s);
        QDir().mkpath(bad);
        ModalAnswer answer;
        answer.accept().chooseFile(bad).press(QMessageBox::Ok).accept().chooseFile(good);
        project.loadLastOrPrompt();
        QVERIFY(answer.allUsed());
        const QString intro = u"Select a Project"_s;
        const QString picker = u"Select Project Folder (contains dashboard_signals.def)"_s;
        QCOMPARE(answer.titles(), QStringList({intro, picker, u"Invalid Project"_s, intro, picker}));
        QCOMPARE(answer.texts()[2], u"Selected folder does not contain dashboard_signals.def"_s);
        QCOMPARE(project.path(), good);
        QCOMPARE(stored("Tavimar"), good);
    }

    void givingUpIsSaid()
    {
        ActiveDefinitions definitions;
        ProjectFolder project(&definitions, &m_window);
        const QSignalSpy refused(&project, &ProjectFolder::refused);
        ModalAnswer answer;
        answer.reject(); // the introduction
        project.showIntroAndPrompt();
        QCOMPARE(refused.size(), 1);
        answer.accept().reject(); // the picker
        project.showIntroAndPrompt();
        QCOMPARE(refused.size(), 2);
        QVERIFY(answer.allUsed() && answer.unexpected() == 0);
    }
};

QTEST_MAIN(TestProjectFolder)
#include "tst_projectfolder.moc"
