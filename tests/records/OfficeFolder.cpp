#include "OfficeFolder.h"

#include <csignal>
#include <grp.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

#include "Connection.h"

namespace VkTests {

namespace {

constexpr int theProgramWaitMs = 20000;

QString ServerPrograms() {
    const QDir versions(QStringLiteral("/usr/lib/postgresql"));
    for (const QString &version :
         versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        QString folder = versions.filePath(version + QStringLiteral("/bin/"));
        if (QFile::exists(folder + QStringLiteral("initdb"))) return folder;
    }
    return QString();
}

/// The server refuses to run as root; its own user is made by its package.
const passwd *OtherUser() {
    return geteuid() == 0 ? getpwnam("postgres") : nullptr;
}

/// Makes the process another user's, and ends it together with this program, however that ends.
void Prepare(QProcess &rProcess) {
    rProcess.setStandardOutputFile(QProcess::nullDevice());
    rProcess.setStandardErrorFile(QProcess::nullDevice());
    rProcess.setWorkingDirectory(QStringLiteral("/"));
    const passwd *user = OtherUser();
    const uid_t userID = user ? user->pw_uid : geteuid();
    const gid_t groupID = user ? user->pw_gid : getegid();
    rProcess.setChildProcessModifier([=] {
        if (user && (setgroups(0, nullptr) != 0 || setgid(groupID) != 0 || setuid(userID) != 0))
            _exit(1);
        prctl(PR_SET_PDEATHSIG, SIGQUIT);
    });
}

}  // namespace

OfficeFolder::~OfficeFolder() = default;

void OfficeFolder::WithConnection(const QString &aAddress,
                                  const std::function<void(QSqlQuery &)> &aBody) const {
    {
        QSqlDatabase database;
        Locate(database, aAddress);
        if (!database.open()) qFatal("%s", qUtf8Printable(database.lastError().text()));
        QSqlQuery query(database);
        aBody(query);
    }
    QSqlDatabase::removeDatabase(QStringLiteral("tamper"));
}

bool OfficeFolder::CanConnect(const QString &aAddress) const {
    bool isOpen = false;
    {
        QSqlDatabase database;
        Locate(database, aAddress);
        isOpen = database.open();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("tamper"));
    return isOpen;
}

QVariant OfficeFolder::Tamper(const QString &aAddress, const QStringList &aStatements) const {
    QVariant result;
    WithConnection(aAddress, [&](QSqlQuery &query) {
        for (const QString &statement : aStatements) {
            if (!query.exec(statement))
                qFatal("%s: %s", qUtf8Printable(statement),
                       qUtf8Printable(query.lastError().text()));
            if (query.next()) result = query.value(0);
        }
    });
    return result;
}

bool OfficeFolder::Accepts(const QString &aAddress, const QString &aStatement) const {
    bool isAccepted = false;
    WithConnection(aAddress, [&](QSqlQuery &query) {
        if (aAddress.startsWith(QStringLiteral("sqlite")))
            query.exec(QStringLiteral("PRAGMA foreign_keys=ON"));
        query.exec(QStringLiteral("BEGIN"));
        isAccepted = query.exec(aStatement);
        query.exec(QStringLiteral("ROLLBACK"));
    });
    return isAccepted;
}

QString SqliteFolder::NewAddress() {
    return QStringLiteral("sqlite:") + Path(QStringLiteral("office%1.db").arg(++theCount));
}

QString SqliteFolder::Shown(const QString &aAddress) const {
    return aAddress.section(u':', 1);
}

void SqliteFolder::Locate(QSqlDatabase &rDatabase, const QString &aAddress) const {
    rDatabase = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("tamper"));
    rDatabase.setDatabaseName(Shown(aAddress));
}

ServerFolder::ServerFolder(Language aLanguage) : theLanguage(aLanguage) {
    const QString programs = ServerPrograms();
    if (programs.isEmpty() || (geteuid() == 0 && !OtherUser())) {
        theComplaint = QStringLiteral("the programs of a PostgreSQL server are not installed");
        return;
    }
    if (const passwd *user = OtherUser()) {
        if (chown(qPrintable(theFolder.path()), user->pw_uid, user->pw_gid) != 0)
            theComplaint = QStringLiteral("the server cannot be given a folder");
    }
    QProcess process;
    Prepare(process);
    process.start(programs + QStringLiteral("initdb"),
                  {QStringLiteral("--no-sync"), QStringLiteral("-U"), QStringLiteral("postgres"),
                   QStringLiteral("-A"), QStringLiteral("trust"), QStringLiteral("-E"),
                   QStringLiteral("UTF8"), QStringLiteral("--locale=C.UTF-8"), QStringLiteral("-D"),
                   theFolder.filePath(QStringLiteral("data"))});
    if (!process.waitForFinished(theProgramWaitMs) || process.exitCode() != 0)
        theComplaint = QStringLiteral("initdb failed");
    QFile rules(theFolder.filePath(QStringLiteral("data/pg_hba.conf")));
    if (rules.open(QIODevice::WriteOnly))
        rules.write(
            "local all keeper scram-sha-256\nlocal all refused reject\nlocal all peer peer\n"
            "local all all trust\n");
    rules.close();
    Start();
}

ServerFolder::~ServerFolder() {
    Stop();
}

void ServerFolder::Start() {
    if (!theComplaint.isEmpty()) return;
    Prepare(theServer);
    // Translated words need no locale of the language, only one that is not "C" itself.
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LANGUAGE"), theLanguage == Language::Russian
                                                       ? QStringLiteral("ru")
                                                       : QStringLiteral("en"));
    theServer.setProcessEnvironment(environment);
    theServer.setStandardErrorFile(theFolder.filePath(QStringLiteral("log")), QIODevice::Append);
    theServer.start(
        ServerPrograms() + QStringLiteral("postgres"),
        {QStringLiteral("-D"), theFolder.filePath(QStringLiteral("data")), QStringLiteral("-k"),
         theFolder.path(), QStringLiteral("-c"), QStringLiteral("listen_addresses="),
         QStringLiteral("-c"), QStringLiteral("fsync=off"), QStringLiteral("-c"),
         QStringLiteral("log_statement=all")});
    const QString address = Address(QStringLiteral("postgres"), QStringLiteral("postgres"));
    if (!QTest::qWaitFor([&] { return CanConnect(address); }, theProgramWaitMs))
        theComplaint = QStringLiteral("the server does not start");
}

void ServerFolder::Stop() {
    if (theServer.state() == QProcess::NotRunning) return;
    ::kill(static_cast<pid_t>(theServer.processId()), SIGQUIT);
    theServer.waitForFinished(theProgramWaitMs);
}

QString ServerFolder::Log() const {
    QFile log(theFolder.filePath(QStringLiteral("log")));
    return log.open(QIODevice::ReadOnly) ? QString::fromUtf8(log.readAll()) : QString();
}

QString ServerFolder::NewAddress() {
    const QString name = QStringLiteral("office%1").arg(++theCount);
    Tamper(Address(QStringLiteral("postgres"), QStringLiteral("postgres")),
           {QStringLiteral("CREATE DATABASE ") + name});
    return Address(QStringLiteral("postgres"), name);
}

QString ServerFolder::Address(const QString &aUser, const QString &aDatabase) const {
    return QStringLiteral("postgresql://%1@localhost/%2?host=%3")
        .arg(aUser, aDatabase, theFolder.path());
}

QString ServerFolder::Shown(const QString &aAddress) const {
    return aAddress.section(u'?', 0, 0);
}

void ServerFolder::Locate(QSqlDatabase &rDatabase, const QString &aAddress) const {
    rDatabase = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), QStringLiteral("tamper"));
    rDatabase.setHostName(theFolder.path());
    rDatabase.setUserName(QStringLiteral("postgres"));
    rDatabase.setDatabaseName(Shown(aAddress).section(u'/', -1));
}

OfficeFolders::~OfficeFolders() {
    Vk_Records::ReadFilesPastQt(true);
}

OfficeFolder &OfficeFolders::Of(const QString &aKind) {
    const QString throughQt = QStringLiteral("sqlite through Qt");
    Vk_Records::ReadFilesPastQt(aKind != throughQt);
    if (aKind == QStringLiteral("sqlite") || aKind == throughQt) {
        if (!theSqlite) theSqlite = std::make_unique<SqliteFolder>();
        return *theSqlite;
    }
    if (!theServer) theServer = std::make_unique<ServerFolder>();
    return *theServer;
}

void OfficeFolders::AddKinds() {
    QTest::addColumn<QString>("kind");
    QTest::newRow("sqlite") << QStringLiteral("sqlite");
    QTest::newRow("postgresql") << QStringLiteral("postgresql");
}

void OfficeFolders::AddRoads() {
    AddKinds();
    QTest::newRow("sqlite through Qt") << QStringLiteral("sqlite through Qt");
}

}  // namespace VkTests
