#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

#include <Vk_DocQuery/Providers.h>
#include <Vk_Records/Database.h>

#include "Connection.h"
#include "SmallOffice.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

constexpr int theLongestWaitMs = 5000;

/// A port of this machine that takes connections and says nothing.
class MutePort {
public:
    MutePort() : theSocket(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *generic = reinterpret_cast<sockaddr *>(&address);
        if (bind(theSocket, generic, size) != 0 || listen(theSocket, 5) != 0 ||
            getsockname(theSocket, generic, &size) != 0)
            qFatal("no port");
        theNumber = ntohs(address.sin_port);
    }
    ~MutePort() { close(theSocket); }
    Q_DISABLE_COPY_MOVE(MutePort)

    int Number() const { return theNumber; }

private:
    int theSocket;
    int theNumber = 0;
};

}  // namespace

/// A server that is not there, does not let in, or goes away.
class TestServer : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        if (!theServer.Complaint().isEmpty()) QSKIP(qUtf8Printable(theServer.Complaint()));
        theServer.Tamper(theServer.Address(QStringLiteral("postgres"), QStringLiteral("postgres")),
                         {QStringLiteral("CREATE ROLE keeper LOGIN PASSWORD 'right'")});
    }
    void init() { theTimer.start(); }
    void cleanup() {
        Vk_Records::CloseDatabase();
        QVERIFY(theTimer.elapsed() < theLongestWaitMs);
    }

    void WrongPassword_data() {
        QTest::addColumn<QString>("user");
        QTest::newRow("wrong") << QStringLiteral("keeper:wrong");
        QTest::newRow("none") << QStringLiteral("keeper");
        QTest::newRow("unknown user") << QStringLiteral("stranger");
    }
    void WrongPassword() {
        QFETCH(QString, user);
        const QString address = theServer.Address(user, QStringLiteral("postgres"));
        const Failure failure = RaisedBy([&] { Vk_Records::OpenDatabase(address); });
        QCOMPARE(failure.Description(),
                 QStringLiteral(
                     "Сервер базы данных \"postgresql://%1@localhost/postgres\" не принял имя "
                     "пользователя или пароль. Исправьте их в адресе базы.")
                     .arg(user.section(u':', 0, 0)));
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseUnreachable));
    }

    void RightPassword() {
        const QString address = theServer.NewAddress();
        theServer.Tamper(address, {QStringLiteral("GRANT CREATE ON SCHEMA public TO keeper")});
        Vk_Records::OpenDatabase(theServer.Address(QStringLiteral("keeper:right"),
                                                   address.section(u'?', 0, 0).section(u'/', -1)));
        QVERIFY(Made<PersonQueries>(u"Vk_DBProvider.PersonQueries")
                    ->GetPersons(QString(), 0)
                    ->Count() >= 60);
    }

    void NoRightToMakeTables() {
        const QString address = theServer.NewAddress();
        const Failure failure = RaisedBy([&] {
            Vk_Records::OpenDatabase(theServer.Address(
                QStringLiteral("keeper:right"), address.section(u'?', 0, 0).section(u'/', -1)));
        });
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseUnreachable));
        QCOMPARE(failure.Description(),
                 QStringLiteral(
                     "Нет прав на работу с базой данных \"%1\". Попросите администратора дать "
                     "права или укажите другую базу.")
                     .arg(theServer.Shown(address).replace(QStringLiteral("postgres@"),
                                                           QStringLiteral("keeper@"))));
    }

    void MissingDatabase() {
        const QString address =
            theServer.Address(QStringLiteral("postgres"), QStringLiteral("nowhere"));
        CheckRefusal(
            address, Vk_Records::DatabaseUnreachable,
            QStringLiteral("На сервере нет базы данных \"%1\". Попросите администратора создать "
                           "ее или исправьте адрес."));
    }

    void AbsentServer_data() {
        QTest::addColumn<QString>("address");
        QTest::newRow("no socket")
            << QStringLiteral("postgresql://u@localhost/office?host=/no-such-folder");
        QTest::newRow("nobody at the port") << QStringLiteral("postgresql://u@127.0.0.1:1/office");
    }
    void AbsentServer() {
        QFETCH(QString, address);
        CheckRefusal(address, Vk_Records::DatabaseUnreachable, theAbsentText);
    }

    void ServerThatDoesNotAnswer() {
        const MutePort mute;
        CheckRefusal(QStringLiteral("postgresql://u@127.0.0.1:%1/office").arg(mute.Number()),
                     Vk_Records::DatabaseUnreachable, theAbsentText);
    }

    void TableLockedWhileRunning() {
        const QString address = OpenSmallOffice(theServer);
        QSqlDatabase holder =
            QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), QStringLiteral("holder"));
        holder.setHostName(address.section(u'=', -1));
        holder.setUserName(QStringLiteral("postgres"));
        holder.setDatabaseName(theServer.Shown(address).section(u'/', -1));
        QVERIFY(holder.open() && holder.transaction());
        QVERIFY(QSqlQuery(holder).exec(QStringLiteral("LOCK TABLE person")));
        const auto persons = Made<PersonQueries>(u"Vk_DBProvider.PersonQueries");
        const Failure failure = RaisedBy([&] { persons->GetPersons(QString(), 0); });
        holder.close();
        holder = QSqlDatabase();
        QSqlDatabase::removeDatabase(QStringLiteral("holder"));
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseBusy));
        QCOMPARE(failure.Description(),
                 QStringLiteral(
                     "База данных \"%1\" занята другой программой. Дождитесь, пока та закончит "
                     "работу, и повторите.")
                     .arg(theServer.Shown(address)));
        QCOMPARE(persons->GetPersons(QString(), 0)->Count(), 5);
    }

    void TableGoneWhileRunning() {
        const QString address = OpenSmallOffice(theServer);
        const auto persons = Made<PersonQueries>(u"Vk_DBProvider.PersonQueries");
        theServer.Tamper(address, {QStringLiteral("ALTER TABLE person RENAME TO elsewhere")});
        const Failure failure = RaisedBy([&] { persons->GetPersons(QString(), 0); });
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseDamaged));
        QCOMPARE(
            failure.Description(),
            QStringLiteral("База данных \"%1\" повреждена: relation \"person\" does not exist. "
                           "Восстановите ее из резервной копии.")
                .arg(theServer.Shown(address)));
    }

    void NoRoomOnTheServersDisk() {
        const QString address = OpenSmallOffice(theServer);
        const Failure failure = RaisedBy([] {
            Vk_Records::ThisThreadsConnection().Run(
                QStringLiteral("DO $$ BEGIN RAISE EXCEPTION 'could not extend file' "
                               "USING ERRCODE = 'disk_full'; END $$"));
        });
        QCOMPARE(failure.Description(),
                 QStringLiteral("На диске с базой данных \"%1\" не осталось места. Освободите "
                                "место и повторите.")
                     .arg(theServer.Shown(address)));
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseFull));
    }

    void ServerGoesAwayAndComesBack() {
        const QString address = OpenSmallOffice(theServer);
        const auto persons = Made<PersonQueries>(u"Vk_DBProvider.PersonQueries");
        QCOMPARE(persons->GetPersons(QString(), 0)->Count(), 5);
        theServer.Stop();
        const Failure lost = RaisedBy([&] { persons->GetPersons(QString(), 0); });
        QCOMPARE(lost.Description(),
                 QStringLiteral("Связь с базой данных \"%1\" прервалась. Проверьте сеть и сервер и "
                                "повторите.")
                     .arg(theServer.Shown(address)));
        QCOMPARE(lost.Number(), qint32(Vk_Records::DatabaseConnectionLost));
        const Failure absent = RaisedBy([&] { persons->GetPersons(QString(), 0); });
        QCOMPARE(absent.Description(), theAbsentText.arg(theServer.Shown(address)));
        theServer.Start();
        QCOMPARE(persons->GetPersons(QString(), 0)->Count(), 5);
    }

private:
    static void CheckRefusal(const QString &aAddress, qint32 aNumber, const QString &aText) {
        const Failure failure = RaisedBy([&] { Vk_Records::OpenDatabase(aAddress); });
        QCOMPARE(failure.Description(), aText.arg(aAddress.section(u'?', 0, 0)));
        QCOMPARE(failure.Number(), aNumber);
    }

    static inline const QString theAbsentText = QStringLiteral(
        "Сервер базы данных \"%1\" не отвечает. Проверьте адрес, сеть и работу сервера.");

    ServerFolder theServer;
    QElapsedTimer theTimer;
};

VK_TEST_CLASS(TestServer);

#include "TestServer.moc"
