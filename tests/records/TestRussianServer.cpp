#include <QTest>

#include <Vk_Records/Database.h>

#include "OfficeFolder.h"
#include "support/TestMain.h"

using namespace VkTests;

namespace {

const QString thePassword = QStringLiteral(
    "Сервер базы данных \"%1\" не принял имя пользователя или пароль. Исправьте их в адресе базы.");
const QString theMissing = QStringLiteral(
    "На сервере нет базы данных \"%1\". Попросите администратора создать ее или исправьте адрес.");
const QString theNotAdmitted = QStringLiteral(
    "Сервер базы данных \"%1\" не пускает этого пользователя с этого компьютера. Попросите "
    "администратора сервера разрешить вход.");
const QString theForbidden = QStringLiteral(
    "Нет прав на работу с базой данных \"%1\". Попросите администратора дать права или укажите "
    "другую базу.");
const QString theCrowded = QStringLiteral(
    "Сервер базы данных \"%1\" не принимает новых подключений: их уже слишком много. Повторите "
    "позже или обратитесь к администратору сервера.");
const QString theRefused = QStringLiteral(
    "Сервер базы данных \"%1\" отказал в подключении. Обратитесь к администратору сервера.");

struct Case {
    const char *User;
    const char *Database;
    const QString &Text;
    const char *English;
    const char *Russian;
};

const Case theCases[] = {
    {"keeper:wrong", "postgres", thePassword, "password authentication failed for user \"keeper\"",
     "пользователь \"keeper\" не прошёл проверку подлинности (по паролю)"},
    {"stranger", "postgres", thePassword, "role \"stranger\" does not exist",
     "роль \"stranger\" не существует"},
    {"postgres", "roles", theMissing, "database \"roles\" does not exist",
     "база данных \"roles\" не существует"},
    {"postgres", "password authentication failed", theMissing,
     "database \"password authentication failed\" does not exist",
     "база данных \"password authentication failed\" не существует"},
    {"refused", "postgres", theNotAdmitted,
     "pg_hba.conf rejects connection for host \"[local]\", user \"refused\", database "
     "\"postgres\", no encryption",
     "pg_hba.conf отвергает подключение: компьютер \"[local]\", пользователь \"refused\", база "
     "данных \"postgres\", без шифрования"},
    {"nologin", "postgres", theNotAdmitted, "role \"nologin\" is not permitted to log in",
     "для роли \"nologin\" вход запрещён"},
    {"stray", "closed", theForbidden, "permission denied for database \"closed\"",
     "доступ к базе \"closed\" запрещён"},
    {"crowd", "postgres", theCrowded, "too many connections for role \"crowd\"",
     "слишком много подключений для роли \"crowd\""},
    {"postgres", "asleep", theRefused, "database \"asleep\" is not currently accepting connections",
     "база \"asleep\" не принимает подключения в данный момент"},
};

}  // namespace

/// A server's refusals to connect, which carry no code: in English and in Russian they mean the
/// same.
class TestRussianServer : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        for (ServerFolder *server : {&theEnglish, &theRussian}) {
            if (!server->Complaint().isEmpty()) QSKIP(qUtf8Printable(server->Complaint()));
            server->Tamper(
                server->Address(QStringLiteral("postgres"), QStringLiteral("postgres")),
                {QStringLiteral("CREATE ROLE keeper LOGIN PASSWORD 'right'"),
                 QStringLiteral("CREATE ROLE refused LOGIN"), QStringLiteral("CREATE ROLE nologin"),
                 QStringLiteral("CREATE ROLE stray LOGIN"),
                 QStringLiteral("CREATE ROLE crowd LOGIN CONNECTION LIMIT 0"),
                 QStringLiteral("CREATE DATABASE closed"), QStringLiteral("CREATE DATABASE asleep"),
                 QStringLiteral("REVOKE CONNECT ON DATABASE closed FROM PUBLIC"),
                 QStringLiteral("ALTER DATABASE asleep ALLOW_CONNECTIONS false")});
        }
    }
    void cleanup() { Vk_Records::CloseDatabase(); }

    void Refusals_data() {
        QTest::addColumn<bool>("isRussian");
        QTest::addColumn<int>("index");
        for (const bool isRussian : {false, true}) {
            for (int i = 0; i < int(std::size(theCases)); ++i) {
                QTest::addRow("%s, %s/%s", isRussian ? "Russian" : "English", theCases[i].User,
                              theCases[i].Database)
                    << isRussian << i;
            }
        }
    }
    void Refusals() {
        QFETCH(bool, isRussian);
        QFETCH(int, index);
        const Case &refused = theCases[index];
        const ServerFolder &server = isRussian ? theRussian : theEnglish;
        const QString database =
            QString::fromLatin1(refused.Database).replace(u' ', QStringLiteral("%20"));
        const QString address = server.Address(QString::fromLatin1(refused.User), database);
        const auto failure = RaisedBy([&] { Vk_Records::OpenDatabase(address); });
        const QString shown = QStringLiteral("postgresql://%1@localhost/%2")
                                  .arg(QString::fromLatin1(refused.User).section(u':', 0, 0),
                                       QString::fromLatin1(refused.Database));
        QCOMPARE(failure.Description(),
                 refused.Text.arg(shown) +
                     Said(QString::fromUtf8(isRussian ? refused.Russian : refused.English)));
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseUnreachable));
    }

    void RefusedRequest() {
        const QString address = theRussian.NewAddress();
        Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::Empty);
        theRussian.Tamper(address, {QStringLiteral("ALTER TABLE person RENAME TO elsewhere")});
        Vk_Records::CloseDatabase();
        QCOMPARE(RaisedBy([&] { Vk_Records::OpenDatabase(address); }).Description(),
                 QStringLiteral("База данных \"%1\" повреждена: в ней нет таблиц: person. "
                                "Восстановите ее из резервной копии.")
                     .arg(theRussian.Shown(address)));
        theRussian.Tamper(address, {QStringLiteral("ALTER TABLE elsewhere RENAME TO person"),
                                    QStringLiteral("ALTER TABLE person RENAME inn TO innn")});
        QCOMPARE(
            RaisedBy([&] { Vk_Records::OpenDatabase(address); }).Description(),
            QStringLiteral("База данных \"%1\" повреждена. Восстановите ее из резервной копии.")
                    .arg(theRussian.Shown(address)) +
                Said(QStringLiteral("столбец \"inn\" не существует")));
    }

private:
    ServerFolder theEnglish;
    ServerFolder theRussian = ServerFolder(ServerFolder::Language::Russian);
};

VK_TEST_CLASS(TestRussianServer);

#include "TestRussianServer.moc"
