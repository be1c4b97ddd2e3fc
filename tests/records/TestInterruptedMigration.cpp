#include <array>

#include <QFileInfo>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

#include <Vk_DocQuery/Providers.h>
#include <Vk_Records/Database.h>

#include "StoredOffice.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

constexpr int theWaitMs = 20000;

/// A host that brings an office up, in a process of its own.
class OpeningProgram {
public:
    explicit OpeningProgram(const QString &aAddress) {
        theProcess.start(QStringLiteral(VK_OPENING_PROGRAM), {aAddress});
        if (Said() != QStringLiteral("ready")) qFatal("no other program");
    }
    ~OpeningProgram() { Kill(); }
    Q_DISABLE_COPY_MOVE(OpeningProgram)

    void Begin() {
        theProcess.write("\n");
        theProcess.waitForBytesWritten(theWaitMs);
    }
    QString Said() {
        while (!theProcess.canReadLine()) {
            if (!theProcess.waitForReadyRead(theWaitMs)) return QStringLiteral("nothing");
        }
        return QString::fromUtf8(theProcess.readLine()).trimmed();
    }
    bool IsOver() { return theProcess.waitForFinished(0); }
    void Kill() {
        theProcess.kill();
        theProcess.waitForFinished(theWaitMs);
    }

private:
    QProcess theProcess;
};

}  // namespace

/// Programs that bring an office up and are killed meanwhile, and such that do it at once.
class TestInterruptedMigration : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { Vk_Records::CloseDatabase(); }

    void FileWhoseProgramIsKilled_data() {
        QTest::addColumn<bool>("hasWritten");
        QTest::newRow("before the file is written") << false;
        QTest::newRow("while the file is written") << true;
    }
    void FileWhoseProgramIsKilled() {
        QFETCH(bool, hasWritten);
        SqliteFolder folder;
        QString address;
        bool isInTheMiddle = false;
        while (!isInTheMiddle) {  // the program may be quicker than we are
            address = LongOffice(folder);
            const QString path = folder.Shown(address);
            const QString journal = path + QStringLiteral("-journal");
            const qint64 size = QFileInfo(path).size();
            const QString before = ShapeOf(folder, address);
            OpeningProgram program(address);
            program.Begin();
            const auto hasBegun = [&] {
                return hasWritten ? QFileInfo(path).size() > size : QFileInfo::exists(journal);
            };
            while (!program.IsOver() && !hasBegun()) {
            }
            program.Kill();
            const bool isRolledBack = QFileInfo::exists(journal);
            const int version = VersionIn(folder, address);
            QVERIFY(version >= (isRolledBack ? 1 : 2) && version <= theVersion);
            isInTheMiddle = isRolledBack && version == 1;  // of the long step
            if (isInTheMiddle) QCOMPARE(ShapeOf(folder, address), before);
        }
        QCOMPARE(PersonsIn(address), thePersons);
        QCOMPARE(VersionIn(folder, address), theVersion);
    }

    void ServerWhoseProgramIsKilled_data() {
        QTest::addColumn<bool>("isServerKilled");
        QTest::newRow("the program") << false;
        QTest::newRow("the server") << true;
    }
    void ServerWhoseProgramIsKilled() {
        QFETCH(bool, isServerKilled);
        auto &folder = static_cast<ServerFolder &>(theFolders.Of(QStringLiteral("postgresql")));
        if (!folder.Complaint().isEmpty()) QSKIP(qUtf8Printable(folder.Complaint()));
        const QString address = StoredOffice(folder, 1);
        const QString before = ContentsOf(folder, address) + ShapeOf(folder, address);
        {
            // The table that the step comes to last.
            const TableInUse use(folder, address, QStringLiteral("template"));
            OpeningProgram program(address);
            program.Begin();
            QTRY_VERIFY_WITH_TIMEOUT(IsSomebodyWaiting(folder, address), theWaitMs);
            if (isServerKilled)
                folder.Stop();
            else
                program.Kill();
        }
        if (isServerKilled) folder.Start();
        QCOMPARE(VersionIn(folder, address), 1);
        QTRY_COMPARE_WITH_TIMEOUT(ContentsOf(folder, address) + ShapeOf(folder, address), before,
                                  theWaitMs);
        QCOMPARE(PersonsIn(address), 12);
        QCOMPARE(VersionIn(folder, address), theVersion);
    }

    void SeveralAtOnce_data() { OfficeFolders::AddKinds(); }
    void SeveralAtOnce() {
        QFETCH(QString, kind);
        OfficeFolder &folder = theFolders.Of(kind);
        if (!folder.Complaint().isEmpty()) QSKIP(qUtf8Printable(folder.Complaint()));
        for (int round = 0; round < 3; ++round) {
            const QString address = StoredOffice(folder, 1);
            const QString before = ContentsOf(folder, address);
            {
                std::array<OpeningProgram, 3> programs{
                    {OpeningProgram(address), OpeningProgram(address), OpeningProgram(address)}};
                for (OpeningProgram &program : programs) program.Begin();
                for (OpeningProgram &program : programs)
                    QCOMPARE(program.Said(), QStringLiteral("open"));
            }
            QCOMPARE(VersionIn(folder, address), theVersion);
            QCOMPARE(
                folder.Tamper(address, {QStringLiteral("SELECT count(*) FROM vk_schema")}).toInt(),
                1);
            QCOMPARE(ContentsOf(folder, address), before);
        }
    }

private:
    static constexpr int theVersion = 3;
    static constexpr int thePersons = 100012;

    /// Another user of a table, so that nobody can change it.
    class TableInUse {
    public:
        TableInUse(const ServerFolder &aFolder, const QString &aAddress, const QString &aTable)
            : theDatabase(QSqlDatabase::addDatabase(QStringLiteral("QPSQL"),
                                                    QStringLiteral("user of a table"))) {
            theDatabase.setHostName(aAddress.section(u'=', -1));
            theDatabase.setUserName(QStringLiteral("postgres"));
            theDatabase.setDatabaseName(aFolder.Shown(aAddress).section(u'/', -1));
            if (!theDatabase.open() || !theDatabase.transaction() ||
                !QSqlQuery(theDatabase)
                     .exec(QStringLiteral("LOCK TABLE %1 IN ACCESS SHARE MODE").arg(aTable)))
                qFatal("no lock");
        }
        ~TableInUse() {
            theDatabase.close();
            theDatabase = QSqlDatabase();
            QSqlDatabase::removeDatabase(QStringLiteral("user of a table"));
        }
        Q_DISABLE_COPY_MOVE(TableInUse)

    private:
        QSqlDatabase theDatabase;
    };

    static bool IsSomebodyWaiting(const OfficeFolder &aFolder, const QString &aAddress) {
        return aFolder
                   .Tamper(aAddress,
                           {QStringLiteral("SELECT count(*) FROM pg_locks WHERE NOT "
                                           "granted AND relation = 'template'::regclass")})
                   .toInt() > 0;
    }

    /// An office whose tables take a while to copy.
    static QString LongOffice(OfficeFolder &aFolder) {
        QString address = StoredOffice(aFolder, 1);
        aFolder.Tamper(
            address,
            {QStringLiteral("WITH RECURSIVE n (i) AS (SELECT 1001 UNION ALL SELECT i + 1 FROM n "
                            "WHERE i < 101000) INSERT INTO person SELECT i, 3, '', '', "
                            "'Налогоплательщик ' || i, 'Налогоплательщик', 0, NULL, NULL FROM n")});
        return address;
    }

    static int PersonsIn(const QString &aAddress) {
        Vk_Records::OpenDatabase(aAddress);
        const auto persons =
            Made<PersonQueries>(u"Vk_DBProvider.PersonQueries")->GetPersons(QString(), 0);
        Vk_Records::CloseDatabase();
        return static_cast<int>(persons->Count());
    }

    OfficeFolders theFolders;
};

VK_TEST_CLASS(TestInterruptedMigration);

#include "TestInterruptedMigration.moc"
