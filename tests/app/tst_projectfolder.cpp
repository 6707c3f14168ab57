#include "app/ProjectFolder.h"
#include "definitions/ActiveDefinitions.h"
#include "support/ModalAnswer.h"

#include <QDir>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

class TestProjectFolder : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QWidget m_window;

    QString makeProject(const QString& name, const QByteArray& text = "DASHBOARD_SIGNAL(A, \"a\", M)\n")
    {
        const QString folder = m_dir.filePath(name);
        QDir().mkpath(folder);
        QFile file(folder + QStringLiteral("/dashboard_signals.def"));
        return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? folder : QString();
    }
    static QString stored(const char* organization)
    {
        return QSettings(QLatin1String(organization), QStringLiteral("Sigvane"))
            .value(QStringLiteral("projectDir"))
            .toString();
    }

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_dir.isValid());
        QSettings(QStringLiteral("YourCompany"), QStringLiteral("Sigvane")).clear();
        QSettings(QStringLiteral("Tavimar"), QStringLiteral("Sigvane")).clear();
    }

    void opensAProject()
    {
        ActiveDefinitions definitions;
        ProjectFolder project(&definitions, &m_window);
        const QString folder = makeProject(QStringLiteral("good"));
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

    void changesNothingForAFolderThatIsNoProject_data()
    {
        QTest::addColumn<QString>("dir");
        QTest::newRow("empty") << QString();
        QTest::newRow("missing") << m_dir.filePath(QStringLiteral("missing"));
        QTest::newRow("no definitions") << m_dir.path();
    }
    void changesNothingForAFolderThatIsNoProject()
    {
        QFETCH(QString, dir);
        ActiveDefinitions definitions;
        ProjectFolder project(&definitions, &m_window);
        const QSignalSpy aboutToOpen(&project, &ProjectFolder::aboutToOpen);
        QVERIFY(!project.open(dir));
        QVERIFY(aboutToOpen.isEmpty());
        QCOMPARE(project.path(), QString());
        QCOMPARE(gSignalParser, nullptr);
        QCOMPARE(stored("YourCompany"), QString());
        project.ensureSubdirs(); // without a project it makes nothing, nowhere
        QVERIFY(!QFileInfo::exists(QStringLiteral("recordings")));
        QVERIFY(!QFileInfo::exists(QStringLiteral("/recordings")));
    }

    void definitionsThatAreADirectory()
    {
        ActiveDefinitions definitions;
        ProjectFolder project(&definitions, &m_window);
        const QString folder = m_dir.filePath(QStringLiteral("dir"));
        const QString path = folder + QStringLiteral("/dashboard_signals.def");
        QDir().mkpath(path);
        QVERIFY(ProjectFolder::isValid(folder));
        ModalAnswer answer;
        answer.press(QMessageBox::Ok);
        QVERIFY(!project.open(folder));
        QCOMPARE(answer.titles(), QStringList(QStringLiteral("Signals Definition")));
        QCOMPARE(answer.texts(), QStringList(QStringLiteral("Cannot find signals file:\n") + path));
        QCOMPARE(project.path(), folder); // it is the project all the same
        QCOMPARE(stored("YourCompany"), folder);
    }

    void failedLoadKeepsTheCatalogueBefore()
    {
        ActiveDefinitions definitions;
        ProjectFolder project(&definitions, &m_window);
        const QString folder = makeProject(QStringLiteral("good"));
        QVERIFY(project.open(folder));
        const DashboardSignalParser* before = gSignalParser;
        ModalAnswer answer;
        answer.press(QMessageBox::Ok);
        const QString missing = folder + QStringLiteral("/<b>none</b>");
        QVERIFY(!project.loadDefinitions(missing));
        QCOMPARE(answer.texts(), QStringList(QStringLiteral("Cannot find signals file:\n") + missing));
        QCOMPARE(gSignalParser, before);
        QVERIFY(project.loadDefinitions(project.definitionsFile()));
        QVERIFY(gSignalParser != nullptr);
    }

    void asksAgainUntilTheFolderIsAProject()
    {
        ActiveDefinitions definitions;
        ProjectFolder project(&definitions, &m_window);
        QSettings(QStringLiteral("Tavimar"), QStringLiteral("Sigvane"))
            .setValue(QStringLiteral("projectDir"), makeProject(QStringLiteral("last")));
        const QString good = makeProject(QStringLiteral("chosen"));
        const QString bad = m_dir.filePath(QStringLiteral("bad"));
        QDir().mkpath(bad);
        ModalAnswer answer;
        answer.accept().chooseFile(bad).press(QMessageBox::Ok).accept().chooseFile(good);
        project.loadLastOrPrompt();
        QVERIFY(answer.allUsed());
        const QString intro = QStringLiteral("Select a Project");
        const QString picker = QStringLiteral("Select Project Folder (contains dashboard_signals.def)");
        QCOMPARE(answer.titles(),
                 QStringList({intro, picker, QStringLiteral("Invalid Project"), intro, picker}));
        QCOMPARE(answer.texts()[2], QStringLiteral("Selected folder does not contain dashboard_signals.def"));
        QCOMPARE(project.path(), good);
        QCOMPARE(stored("Tavimar"), good);
    }

    void givingUpIsSaid_data()
    {
        QTest::addColumn<bool>("atThePicker");
        QTest::newRow("introduction") << false;
        QTest::newRow("picker") << true;
    }
    void givingUpIsSaid()
    {
        QFETCH(bool, atThePicker);
        ActiveDefinitions definitions;
        ProjectFolder project(&definitions, &m_window);
        const QSignalSpy refused(&project, &ProjectFolder::refused);
        ModalAnswer answer;
        if (atThePicker)
            answer.accept();
        answer.reject();
        project.showIntroAndPrompt();
        QVERIFY(answer.allUsed());
        QCOMPARE(answer.unexpected(), 0);
        QCOMPARE(refused.size(), 1);
    }
};

QTEST_MAIN(TestProjectFolder)
#include "tst_projectfolder.moc"
