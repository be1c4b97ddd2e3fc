#include <array>
#include <atomic>
#include <linux/filter.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

#include <QFile>
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
    int Socket() const { return theSocket; }

private:
    int theSocket;
    int theNumber = 0;
};

/// A port of this machine that leads to the server's socket until the network behind it is dead:
/// from then on nothing that arrives is as much as confirmed.
class PortToTheServer {
public:
    enum class Death { BeforeTheRequest, AfterTheRequest };

    explicit PortToTheServer(QString aServersSocket)
        : theServersSocket(std::move(aServersSocket)), theThread([this] { Run(); }) {}
    ~PortToTheServer() {
        theIsOver = true;
        theThread.join();
    }
    Q_DISABLE_COPY_MOVE(PortToTheServer)

    int Number() const { return thePort.Number(); }
    /// Kills the connection that was made last; one made later lives.
    void Die(Death aWhen) {
        if (aWhen == Death::BeforeTheRequest)
            Deafen(theClient);
        else
            theDiesAtNextRequest = true;
    }

private:
    static void Deafen(int aSocket) {
        sock_filter nothing = BPF_STMT(BPF_RET | BPF_K, 0);
        const sock_fprog program{1, &nothing};
        if (setsockopt(aSocket, SOL_SOCKET, SO_ATTACH_FILTER, &program, sizeof program) != 0)
            qFatal("no filter");
    }

    int Connected() const {
        const QByteArray path = QFile::encodeName(theServersSocket);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
        const int server = socket(AF_UNIX, SOCK_STREAM, 0);
        if (connect(server, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
            qFatal("no server");
        return server;
    }

    static bool Forward(int aFrom, int aTo) {
        std::array<char, 65536> bytes{};
        const ssize_t count = read(aFrom, bytes.data(), bytes.size());
        return count > 0 && write(aTo, bytes.data(), static_cast<std::size_t>(count)) == count;
    }

    void Run() {
        int server = -1;
        while (!theIsOver) {
            std::array<pollfd, 3> ready{
                {{thePort.Socket(), POLLIN, 0}, {theClient, POLLIN, 0}, {server, POLLIN, 0}}};
            poll(ready.data(), ready.size(), 20);
            if (ready[0].revents != 0) {
                Hang(server);
                theClient = accept(thePort.Socket(), nullptr, nullptr);
                server = Connected();
                continue;
            }
            bool lives = true;
            if (ready[1].revents != 0) {
                if (theDiesAtNextRequest.exchange(false)) {
                    Deafen(theClient);
                    std::array<char, 65536> bytes{};
                    lives = read(theClient, bytes.data(), bytes.size()) > 0;
                } else {
                    lives = Forward(theClient, server);
                }
            }
            if (lives && ready[2].revents != 0) lives = Forward(server, theClient);
            if (!lives) Hang(server);
        }
        Hang(server);
    }

    void Hang(int &rServer) {
        if (rServer < 0) return;
        close(rServer);
        close(theClient);
        rServer = theClient = -1;
    }

    MutePort thePort;
    QString theServersSocket;
    std::atomic<int> theClient = -1;
    std::atomic<bool> theDiesAtNextRequest = false;
    std::atomic<bool> theIsOver = false;
    std::thread theThread;
};

}  // namespace

/// A server that is not there, does not let in, or goes away.
class TestServer : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        if (!theServer.Complaint().isEmpty()) QSKIP(qUtf8Printable(theServer.Complaint()));
        theServer.Tamper(theServer.Address(QStringLiteral("postgres"), QStringLiteral("postgres")),
                         {QStringLiteral("CREATE ROLE keeper LOGIN PASSWORD 'right'"),
                          QStringLiteral("CREATE ROLE peer LOGIN")});
    }
    void cleanup() { Vk_Records::CloseDatabase(); }

    /// Who waits longer than that has no bound at all: hours, or for ever.
    void WaitsAreBounded() {
        OpenSmallOffice(theServer);
        auto &connection = Vk_Records::ThisThreadsConnection();
        QSqlQuery query = connection.Run(QStringLiteral("SHOW lock_timeout"));
        QVERIFY(query.next());
        QCOMPARE(query.value(0).toString(), QStringLiteral("2500ms"));
        QCOMPARE(connection.Database().connectOptions(),
                 QStringLiteral("connect_timeout=2;tcp_user_timeout=3500;keepalives_idle=2;"
                                "keepalives_interval=1;keepalives_count=2;"));
    }

    void WrongPassword_data() {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("said");
        QTest::newRow("wrong") << QStringLiteral("keeper:wrong")
                               << QStringLiteral(
                                      "password authentication failed for user \"keeper\"");
        QTest::newRow("none") << QStringLiteral("keeper")
                              << Unconnected(QStringLiteral("fe_sendauth: no password supplied"));
        QTest::newRow("unknown user")
            << QStringLiteral("stranger") << QStringLiteral("role \"stranger\" does not exist");
        QTest::newRow("other means")
            << QStringLiteral("peer")
            << QStringLiteral("Peer authentication failed for user \"peer\"");
    }
    void WrongPassword() {
        QFETCH(QString, user);
        QFETCH(QString, said);
        const QString address = theServer.Address(user, QStringLiteral("postgres"));
        const Failure failure = RaisedBy([&] { Vk_Records::OpenDatabase(address); });
        QCOMPARE(failure.Description(),
                 QStringLiteral(
                     "Сервер базы данных \"postgresql://%1@localhost/postgres\" не принял имя "
                     "пользователя или пароль. Исправьте их в адресе базы.")
                         .arg(user.section(u':', 0, 0)) +
                     Said(said));
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseUnreachable));
    }

    void RightPassword() {
        const QString address = theServer.NewAddress();
        theServer.Tamper(address, {QStringLiteral("GRANT CREATE ON SCHEMA public TO keeper")});
        Vk_Records::OpenDatabase(theServer.Address(QStringLiteral("keeper:right"),
                                                   address.section(u'?', 0, 0).section(u'/', -1)),
                                 Vk_Records::NewDatabase::WithSampleOffice);
        QVERIFY(Made<PersonQueries>(u"Vk_DBProvider.PersonQueries")
                    ->GetPersons(QString(), 0)
                    ->Count() >= 60);
    }

    void NoRightToMakeTables() {
        const QString address = theServer.NewAddress();
        const Failure failure = RaisedBy([&] {
            Vk_Records::OpenDatabase(
                theServer.Address(QStringLiteral("keeper:right"),
                                  address.section(u'?', 0, 0).section(u'/', -1)),
                Vk_Records::NewDatabase::WithSampleOffice);
        });
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseUnreachable));
        QCOMPARE(failure.Description(),
                 QStringLiteral(
                     "Нет прав на работу с базой данных \"%1\". Попросите администратора дать "
                     "права или укажите другую базу.")
                         .arg(theServer.Shown(address).replace(QStringLiteral("postgres@"),
                                                               QStringLiteral("keeper@"))) +
                     Said(QStringLiteral("permission denied for schema public")));
    }

    void MissingDatabase() {
        const QString address =
            theServer.Address(QStringLiteral("postgres"), QStringLiteral("nowhere"));
        CheckRefusal(
            address, Vk_Records::DatabaseUnreachable,
            QStringLiteral("На сервере нет базы данных \"%1\". Попросите администратора создать "
                           "ее или исправьте адрес."),
            QStringLiteral("database \"nowhere\" does not exist"));
    }

    void AbsentServer_data() {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("said");
        QTest::newRow("no socket")
            << QStringLiteral("postgresql://u@localhost/office?host=/no-such-folder")
            << QStringLiteral(
                   "connection to server on socket \"/no-such-folder/.s.PGSQL.5432\" "
                   "failed: No such file or directory");
        QTest::newRow("nobody at the port")
            << QStringLiteral("postgresql://u@127.0.0.1:1/office")
            << QStringLiteral(
                   "connection to server at \"127.0.0.1\", port 1 failed: Connection refused");
    }
    void AbsentServer() {
        QFETCH(QString, address);
        QFETCH(QString, said);
        CheckRefusal(address, Vk_Records::DatabaseUnreachable, theAbsentText, said);
    }

    void ServerThatDoesNotAnswer() {
        const MutePort mute;
        CheckRefusal(
            QStringLiteral("postgresql://u@127.0.0.1:%1/office").arg(mute.Number()),
            Vk_Records::DatabaseUnreachable, theAbsentText,
            QStringLiteral("connection to server at \"127.0.0.1\", port %1 failed: timeout expired")
                .arg(mute.Number()));
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
            QStringLiteral("База данных \"%1\" повреждена. Восстановите ее из резервной копии.")
                    .arg(theServer.Shown(address)) +
                Said(QStringLiteral("relation \"person\" does not exist")));
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

    void RefusedStatement() {
        const QString address = OpenSmallOffice(theServer);
        const Failure failure = RaisedBy(
            [] { Vk_Records::ThisThreadsConnection().Run(QStringLiteral("SELECT 1 / 0")); });
        QCOMPARE(
            failure.Description(),
            QStringLiteral("База данных \"%1\" не выполнила запрос. Обратитесь к администратору.")
                    .arg(theServer.Shown(address)) +
                Said(QStringLiteral("division by zero")));
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseQueryFailed));
    }

    void ServerThatCanNoLongerBeReached_data() {
        QTest::addColumn<bool>("isConfirmed");
        QTest::newRow("before the request") << false;
        QTest::newRow("while it works on the request") << true;
    }
    void ServerThatCanNoLongerBeReached() {
        QFETCH(bool, isConfirmed);
        using Death = PortToTheServer::Death;
        const QString direct = OpenSmallOffice(theServer);
        PortToTheServer port(direct.section(u'=', -1) + QStringLiteral("/.s.PGSQL.5432"));
        const QString address = QStringLiteral("postgresql://postgres@127.0.0.1:%1/%2")
                                    .arg(port.Number())
                                    .arg(theServer.Shown(direct).section(u'/', -1));
        Vk_Records::OpenDatabase(address);
        const auto persons = Made<PersonQueries>(u"Vk_DBProvider.PersonQueries");
        QCOMPARE(persons->GetPersons(QString(), 0)->Count(), 5);
        port.Die(isConfirmed ? Death::AfterTheRequest : Death::BeforeTheRequest);
        const Failure lost = RaisedBy([&] { persons->GetPersons(QString(), 0); });
        QCOMPARE(lost.Description(),
                 QStringLiteral("Связь с базой данных \"%1\" прервалась. Проверьте сеть и сервер и "
                                "повторите.")
                     .arg(address));
        QCOMPARE(lost.Number(), qint32(Vk_Records::DatabaseConnectionLost));
        QCOMPARE(persons->GetPersons(QString(), 0)->Count(), 5);
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
        QCOMPARE(absent.Description(),
                 theAbsentText.arg(theServer.Shown(address)) +
                     Said(Unconnected(QStringLiteral("No such file or directory"))));
        theServer.Start();
        QCOMPARE(persons->GetPersons(QString(), 0)->Count(), 5);
    }

private:
    /// What the client library says of the server's socket.
    QString Unconnected(const QString &aReason) const {
        return QStringLiteral("connection to server on socket \"%1/.s.PGSQL.5432\" failed: %2")
            .arg(theServer.Address(QString(), QString()).section(u'=', -1), aReason);
    }
    static void CheckRefusal(const QString &aAddress, qint32 aNumber, const QString &aText,
                             const QString &aSaid) {
        const Failure failure = RaisedBy([&] { Vk_Records::OpenDatabase(aAddress); });
        QCOMPARE(failure.Description(), aText.arg(aAddress.section(u'?', 0, 0)) + Said(aSaid));
        QCOMPARE(failure.Number(), aNumber);
    }

    static inline const QString theAbsentText = QStringLiteral(
        "Сервер базы данных \"%1\" не отвечает. Проверьте адрес, сеть и работу сервера.");

    ServerFolder theServer;
};

VK_TEST_CLASS(TestServer);

#include "TestServer.moc"
