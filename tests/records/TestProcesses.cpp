#include <thread>

#include <QProcess>
#include <QTest>

#include <Vk_DocQuery/Providers.h>
#include <Vk_Records/Database.h>

#include "Connection.h"
#include "SmallOffice.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

constexpr int theWaitMs = 20000;
constexpr int theRounds = 3;

/// A program beside this one on the same file.
class OtherProgram {
public:
    explicit OtherProgram(const QString &aPath) {
        theProcess.start(QStringLiteral(VK_OTHER_PROGRAM), {aPath});
        if (!theProcess.waitForStarted(theWaitMs)) qFatal("no other program");
    }
    ~OtherProgram() { Kill(); }
    Q_DISABLE_COPY_MOVE(OtherProgram)

    QString Answer(const QString &aStatement) {
        theProcess.write(aStatement.toUtf8() + '\n');
        while (!theProcess.canReadLine()) {
            if (!theProcess.waitForReadyRead(theWaitMs)) return QStringLiteral("no answer");
        }
        return QString::fromUtf8(theProcess.readLine()).trimmed();
    }
    void Kill() {
        theProcess.kill();
        theProcess.waitForFinished(theWaitMs);
    }

private:
    QProcess theProcess;
};

std::shared_ptr<PersonQueries> Persons() {
    return Made<PersonQueries>(u"Vk_DBProvider.PersonQueries");
}

}  // namespace

/// Other processes on the same database.
class TestProcesses : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { Vk_Records::CloseDatabase(); }

    void OneFillsTheOtherWaits_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("stage");
        for (const char *kind : {"sqlite", "postgresql"}) {
            for (const Stage stage : {Started, Connected, Locked, Ended})
                QTest::addRow("%s, %d", kind, stage) << QString::fromLatin1(kind) << int(stage);
        }
    }
    void OneFillsTheOtherWaits() {
        QFETCH(QString, kind);
        QFETCH(int, stage);
        OfficeFolder &folder = theFolders.Of(kind);
        if (!folder.Complaint().isEmpty()) QSKIP(qUtf8Printable(folder.Complaint()));
        for (int round = 0; round < theRounds; ++round) {
            const QString address = folder.NewAddress();
            QProcess maker;
            maker.start(
                QStringLiteral(VK_MAKE_OFFICE),
                {QStringLiteral("--persons"), QStringLiteral("300"), QStringLiteral("--streams"),
                 QStringLiteral("0"), QStringLiteral("--forms"), QStringLiteral("0"), address});
            QVERIFY(maker.waitForStarted(theWaitMs));
            while (!HasReached(folder, address, stage) && !maker.waitForFinished(0)) {
            }
            Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::Empty);
            const auto count = Persons()->GetPersons(QString(), 0)->Count();
            QVERIFY(maker.state() == QProcess::NotRunning || maker.waitForFinished(theWaitMs));
            const bool isOurs = maker.exitCode() != 0;
            QCOMPARE(count, isOurs ? 0 : 300);
            if (isOurs) {
                QCOMPARE(QString::fromUtf8(maker.readAllStandardError()).trimmed(),
                         QStringLiteral("База данных \"%1\" уже есть. Укажите имя новой базы.")
                             .arg(folder.Shown(address)));
            }
            // What is there is what we see, and nobody has put another file in its place.
            QCOMPARE(
                folder.Tamper(address, {QStringLiteral("SELECT count(*) FROM person")}).toInt(),
                static_cast<int>(count));
        }
    }

    void LocksSurviveAnotherThreadsConnection() {
        const QString address = OpenSmallOffice(theFiles);
        auto &connection = Vk_Records::ThisThreadsConnection();
        connection.Run(QStringLiteral("BEGIN"));
        QCOMPARE(Persons()->GetPersons(QString(), 0)->Count(), 5);
        OtherProgram other(theFiles.Shown(address));
        const QString write = QStringLiteral("BEGIN EXCLUSIVE");
        QCOMPARE(other.Answer(write), QStringLiteral("5"));
        std::thread([] { Persons()->GetPersons(QString(), 0); }).join();
        QCOMPARE(other.Answer(write), QStringLiteral("5"));
        connection.Run(QStringLiteral("COMMIT"));
        QCOMPARE(other.Answer(write), QStringLiteral("done"));
    }

    void InterruptedTransactionIsRolledBack() {
        const QString address = OpenSmallOffice(theFiles);
        Vk_Records::CloseDatabase();
        const QString path = theFiles.Shown(address);
        OtherProgram other(path);
        // A small cache, so that changed pages reach the file before the end of the transaction.
        for (const char *statement :
             {"PRAGMA cache_size = 5", "BEGIN EXCLUSIVE", "DELETE FROM acc_stream",
              "DELETE FROM person WHERE kind = 3", "CREATE TABLE filler (text TEXT)",
              "INSERT INTO filler WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
              "WHERE i < 3000) SELECT hex(zeroblob(500)) FROM n"})
            QCOMPARE(other.Answer(QString::fromLatin1(statement)), QStringLiteral("done"));
        other.Kill();
        QVERIFY(QFileInfo(path + QStringLiteral("-journal")).size() > 0);
        QVERIFY(OverwriteHead(path));
        Vk_Records::OpenDatabase(address);
        QCOMPARE(Persons()->GetPersons(QString(), 0)->Count(), 5);
        QVERIFY(!QFile::exists(path + QStringLiteral("-journal")));
    }

private:
    /// How far a program has come that fills a database.
    enum Stage { Started, Connected, Locked, Ended };

    static bool HasReached(const OfficeFolder &aFolder, const QString &aAddress, int aStage) {
        const bool isFile = aAddress.startsWith(QStringLiteral("sqlite"));
        const QString path = aFolder.Shown(aAddress);
        const auto count = [&](const char *aFrom) {
            return aFolder
                .Tamper(aAddress,
                        {QStringLiteral("SELECT count(*) FROM ") + QString::fromLatin1(aFrom)})
                .toInt();
        };
        switch (aStage) {
            case Started:
                return true;
            case Connected:
                return isFile ? QFile::exists(path)
                              : count("pg_stat_activity WHERE datname = current_database()") > 1;
            case Locked:
                return isFile ? QFile::exists(path + QStringLiteral("-journal"))
                              : count(
                                    "pg_locks WHERE locktype = 'advisory' AND database = (SELECT "
                                    "oid FROM pg_database WHERE datname = "
                                    "current_database())") > 0;
            default:
                return false;
        }
    }

    /// As a transaction leaves it that was interrupted while it wrote the first page.
    static bool OverwriteHead(const QString &aPath) {
        QFile file(aPath);
        return file.open(QIODevice::ReadWrite) && file.write(QByteArray(100, '\0')) == 100;
    }

    OfficeFolders theFolders;
    SqliteFolder theFiles;
};

VK_TEST_CLASS(TestProcesses);

#include "TestProcesses.moc"
