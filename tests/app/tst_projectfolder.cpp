#include "app/ProjectFolder.h"
#include "definitions/ActiveDefinitions.h"
#include "support/Files.h"
#include "support/ModalAnswer.h"

#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <sys/fsuid.h>

using namespace Qt::StringLiterals;

namespace {

constexpr char kDefinitions[] = "DASHBOARD_SIGNAL(A, \"a\", M)\n";

struct Rig
{
    QTemporaryDir dir;
    QWidget window;
    ActiveDefinitions definitions;
    ProjectFolder project{&definitions, &window};
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
    void opensAProject()
    {
        Rig rig;
        QSettings(u"Tavimar"_s, u"Sigvane"_s).clear();
        const QString folder = rig.makeProject(u"good"_s);
        QVERIFY(rig.project.open(QDir::current().relativeFilePath(folder)));
        QCOMPARE(rig.project.path(), folder);
        QCOMPARE(QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
                 QStringList({u"exports"_s, u"layouts"_s, u"recordings"_s}));
        QVERIFY(gSignalParser);
        QCOMPARE(gSignalParser->signalList().size(), 1);
        QCOMPARE(stored("YourCompany"), folder);
        QCOMPARE(stored("Tavimar"), QString());
    }

    void definitionsThatCannotBeReadLeaveTheOldOnes()
    {
        Rig rig;
        QVERIFY(rig.project.open(rig.makeProject(u"good"_s)));
        const DashboardSignalParser* before = gSignalParser;
        const QString path = writeFile(rig.dir.filePath(u"closed.def"_s), kDefinitions);
        QVERIFY(QFile::setPermissions(path, {}));
        QVERIFY(QFile::setPermissions(rig.dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                                          QFile::ExeGroup));
        rig.answer.press(QMessageBox::Ok);
        const int user = ::setfsuid(65534); // root may read anything: becomes somebody who may not
        const bool loaded = rig.project.loadDefinitions(path);
        ::setfsuid(uid_t(user));
        QVERIFY(!loaded);
        QCOMPARE(rig.answer.texts(), QStringList(u"Failed to load:\n"_s + path));
        QCOMPARE(gSignalParser, before);
    }

    void definitionsFileOpensItsFolder()
    {
        Rig rig;
        const QString folder = rig.makeProject(u"good"_s);
        const QString path = writeFile(folder + u"/other.def"_s, QByteArray(kDefinitions).repeated(2));
        QCOMPARE(rig.project.openWanted({}, path), QStringList());
        QCOMPARE(rig.project.path(), folder);
        QCOMPARE(gSignalParser->signalList().size(), 2);
    }

    void asksAgainUntilTheFolderIsAProject()
    {
        Rig rig;
        QSettings settings(u"Tavimar"_s, u"Sigvane"_s);
        settings.setValue(u"projectDir"_s, rig.makeProject(u"last"_s));
        const QString good = rig.makeProject(u"chosen"_s);
        rig.answer.accept().chooseFile(rig.dir.path()).press(QMessageBox::Ok).accept().chooseFile(good);
        QVERIFY(rig.project.loadLastOrPrompt());
        const QString intro = u"Select a Project"_s;
        const QString picker = u"Select Project Folder (contains dashboard_signals.def)"_s;
        QCOMPARE(rig.answer.titles(), QStringList({intro, picker, u"Invalid Project"_s, intro, picker}));
        QCOMPARE(rig.answer.texts().value(2), u"Selected folder does not contain dashboard_signals.def"_s);
        QCOMPARE(rig.project.path(), good);
        QCOMPARE(stored("Tavimar"), good);
    }
};

QTEST_MAIN(TestProjectFolder)
#include "tst_projectfolder.moc"
